"""What ./dev docs writes into a page stands between two marks."""
from service_rows import NotUnderstood


def between_marks(page, name, text, where):
    """The page with `text` between the marks of `name`; `where` is the page's name, for the error."""
    first, last = f"<!-- {name}: written by ./dev docs -->", f"<!-- end of {name} -->"
    if page.count(first) != 1 or page.count(last) != 1:
        raise NotUnderstood(f"{where} has no marks around the {name}")
    before, rest = page.split(first)
    return f"{before}{first}\n\n{text}\n\n{last}{rest.split(last)[1]}"
