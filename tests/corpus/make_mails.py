"""Tricky mails, made alike each time: names and bytes. A name begins with the kind of trick."""

import base64
import quopri
import random

TEXTS = {  # by charset: what people write in it
    "us-ascii": "Hello there, plain words",
    "utf-8": "Grüße, 日本語 und 😀 mehr",
    "iso-8859-1": "Voilà, ça marche très bien",
    "iso-8859-2": "Příliš žluťoučký kůň",
    "iso8859-7": "Καλημέρα κόσμε",
    "iso-8859-15": "Prix: 12 € à payer",
    "windows-1250": "Zażółć gęślą jaźń",
    "windows-1251": "Съешь ещё этих булок",
    "cp1257": "Ąžuolas ir šermukšnis",
    "cp866": "Привет из прошлого",
    "koi8-r": "Доброе утро, мир",
    "macintosh": "naïve café",
    "iso-2022-jp": "こんにちは、世界の件名",
    "shift_jis": "表計算ソフトの能力",
    "euc-jp": "お知らせ：日本語の本文",
    "gb2312": "你好，世界",
    "gb_2312-80": "简体中文邮件",
    "gb18030": "汉字与字符",
    "big5": "繁體中文郵件",
    "euc-kr": "안녕하세요 세계",
    "utf-16": "wide text 漢字",
    "hz-gb-2312": "你好 abc",
    "iso-2022-kr": "안녕 abc",
    "utf-7": "Gr\u00fc\u00dfe \u65e5",
}
PYTHON_CODECS = {"gb_2312-80": "gb2312", "utf-16": "utf-16-le"}  # the latter without a mark
PICTURE = bytes(range(256)) * 2


def encode(text, charset):
    return text.encode(PYTHON_CODECS.get(charset, charset))


def word(charset, text, form):
    coded = encode(text, charset)
    if form == "b":
        return b"=?%s?B?%s?=" % (charset.encode(), base64.b64encode(coded))
    plain = b"".join(b"%c" % c if chr(c).isalnum() and c < 128 else b"_" if c == 32 else b"=%02X" % c for c in coded)
    return b"=?%s?q?%s?=" % (charset.encode(), plain)


def encoded(body, form):
    if form == "base64":
        return base64.encodebytes(body)
    if form == "quoted-printable":
        return quopri.encodestring(body)
    return body


def head(*lines):
    return b"From: a@example.org\nTo: b@example.org\nDate: Mon, 1 Jan 2024 00:00:00 +0000\n" + b"".join(
        line + b"\n" for line in lines) + b"MIME-Version: 1.0\n"


def part(kind, body, name=None, disposition=None, form="7bit", charset="utf-8"):
    lines = [b"Content-Type: " + kind]
    if kind.startswith(b"text/"):
        lines[0] += b"; charset=" + charset.encode()
    if name and not disposition:
        lines[0] += b'; name="' + name + b'"'
    if disposition:
        lines.append(b"Content-Disposition: " + disposition + (b'; filename="' + name + b'"' if name else b""))
    lines.append(b"Content-Transfer-Encoding: " + form.encode())
    return b"\n".join(lines) + b"\n\n" + encoded(body, form)


def multipart(subtype, parts, boundary=b"=_b", end=True, preamble=b"", epilogue=b""):
    body = preamble + b"".join(b"--" + boundary + b"\n" + each + b"\n" for each in parts)
    if end:
        body += b"--" + boundary + b"--\n" + epilogue
    return b'Content-Type: multipart/' + subtype + b'; boundary="' + boundary + b'"\n\n' + body


def words(rng):
    for charset, text in TEXTS.items():
        for form in "bq":
            yield head(b"Subject: " + word(charset, text, form)) + b"\nx\n"
        half = len(text) // 2
        yield head(b"Subject: " + word(charset, text[:half], "b") + b"\n " + word(charset, text[half:], "q")) + b"\nx\n"
        yield head(b"Subject: Re: " + word(charset, text, "b") + b" (fwd)") + b"\nx\n"
    coded = "日本".encode()
    split = b"?= =?UTF-8?B?".join(base64.b64encode(half) for half in (coded[:4], coded[4:]))
    yield head(b"Subject: =?utf-8?B?" + split + b"?=") + b"\nx\n"


def raw_headers(rng):
    for charset in ("utf-8", "iso-8859-1", "shift_jis", "windows-1251", "euc-jp"):
        subject = TEXTS[charset].encode(charset)
        yield head(b"Subject: " + subject) + part(b"text/plain", b"x", charset=charset)
        yield head(b"Subject: " + subject) + multipart(b"mixed", [part(b"text/plain", b"x", charset=charset)])
        yield head(b"Subject: " + subject) + b"\nx\n"
    yield head(b"Subject: " + TEXTS["iso-2022-jp"].encode("iso-2022-jp")) + b"\nx\n"
    yield head(b"Subject: broken " + "日本語です".encode() + b"\xff") + b"\nx\n"


def bodies(rng):
    for charset, text in TEXTS.items():
        body = encode(text + "\n" + text + "\n", charset)
        for form in ("8bit", "base64", "quoted-printable"):
            if form == "8bit" and charset == "utf-16":
                continue  # holds zero bytes and line feeds
            yield head(b"Subject: x") + part(b"text/plain", body, form=form, charset=charset)


def random_parts(rng, depth):
    kinds = [
        lambda: part(b"text/plain", b"plain %d\n" % rng.randrange(100)),
        lambda: part(b"text/html", b"<p>html %d &eacute;</p>\n" % rng.randrange(100)),
        lambda: part(b"image/png", PICTURE, b"p%d.png" % rng.randrange(100), b"attachment", "base64"),
        lambda: part(b"text/plain", b"named\n", b"n%d.txt" % rng.randrange(100), b"attachment"),
        lambda: part(b"application/pdf", b"%PDF", b"a.pdf", b"inline", "base64"),
        lambda: part(b"message/rfc822", b"Subject: inner\n\ninner text\n"),
        lambda: part(b"text/plain", "größer\n".encode(), form="quoted-printable"),
    ]
    if depth < 3:
        kinds.append(lambda: multipart(rng.choice([b"mixed", b"alternative", b"related"]), random_parts(rng, depth + 1),
                                       b"b%d" % depth))
    return [rng.choice(kinds)() for _ in range(rng.randint(1, 4))]


def trees(rng):
    for _ in range(120):
        made = head(b"Subject: tree") + multipart(b"mixed", random_parts(rng, 0), b"outer", rng.random() < 0.8,
                                                  rng.choice([b"", b"This is a preamble.\n"]),
                                                  rng.choice([b"", b"An epilogue.\n"]))
        yield made if rng.random() < 0.5 else made.replace(b"\n", b"\r\n")


def names(rng):
    values = [
        b'filename="simple.txt"', b"filename=token.txt", b"filename*=utf-8''%E6%97%A5%E6%9C%AC.txt",
        b"filename*0*=iso-8859-1'fr'na%EF; filename*1=ve.txt", b'filename*0="long"; filename*1="er.txt"',
        b'filename="=?utf-8?B?5pel5pysLnR4dA==?="', b'filename="with \\"quotes\\".txt"', b'filename="a;b.txt"',
        b"filename*=shift_jis'ja'%95%5C.txt", b'filename="old.txt"; filename*=utf-8\'\'%C3%A9.txt',
        b'filename="' + "日本.txt".encode() + b'"', b"filename=a.txt (a comment)", b"FILENAME=upper.TXT",
    ]
    for value in values:
        leaf = b"Content-Type: application/octet-stream\nContent-Disposition: attachment; " + value
        yield head(b"Subject: x") + multipart(b"mixed", [part(b"text/plain", b"t"), leaf + b"\n\ndata"])
        leaf = b"Content-Type: application/octet-stream; " + value.replace(b"file", b"").replace(b"FILE", b"")
        yield head(b"Subject: x") + multipart(b"mixed", [part(b"text/plain", b"t"), leaf + b"\n\ndata"])


def addresses(rng):
    values = [
        b"plain@example.org", b"Some Name <a@example.org>", b'"Quoted, Name" <a@example.org>',
        b"=?utf-8?Q?Doe,_J=C3=B6rg?= <j@example.org>", b"a@example.org (a comment)",
        b"a@example.org, B <b@example.org>",
        b"=?iso-2022-jp?B?GyRCO3NFRBsoQg==?= <y@example.jp>,\n =?utf-8?q?=C3=89mile?= <e@example.fr>",
        b'"=?utf-8?Q?in_quotes?=" <q@example.org>', b"undisclosed-recipients:;", b"Team: a@example.org, b@example.org;",
        b"<bare@example.org>", b'"a\\"b" <c@example.org>',
    ]
    for value in values:
        for field in (b"Cc", b"Reply-To"):
            yield head(b"Subject: x", field + b": " + value) + b"\nx\n"


def damaged(rng):
    text = part(b"text/plain", b"words\n")
    yield head(b"Subject: x") + multipart(b"mixed", [b"Content-Type: text/plain\nno empty line\n"])
    yield head(b"Subject: x") + multipart(b"mixed", [b"no header at all\n"])
    yield head(b"Subject: x") + multipart(b"mixed", [b"\nno header\n", text])
    yield head(b"Subject: x") + b"Content-Type: multipart/mixed\n\nno boundary\n"
    yield head(b"Subject: x") + b"Content-Type: multipart/mixed; boundary=q\n\nnever used\n"
    yield head(b"Subject: x") + b"Content-Type: text\n\nhalf a type\n"
    yield head(b"Subject: x") + b"Content-Type: \n\nno type\n"
    yield head(b"Subject: x") + part(b"text/plain", b"YWJj!ZGVm\nZ2hp", form="8bit").replace(b"8bit", b"base64")
    yield head(b"Subject: x") + part(b"text/plain", b"a=ZZb=\nc=3", form="8bit").replace(b"8bit", b"quoted-printable")
    yield head(b"Subject: x") + part(b"text/plain", "日本語です。".encode() + b"\xff", form="8bit")
    yield head(b"Subject: x") + part(b"text/plain", b"caf\xe9", form="8bit", charset="no-such-charset")
    yield head(b"Subject: x") + part(b"text/plain", b"text", form="x-unknown")
    yield head(b"Subject: x", b" folded\n\tagain") + b"\nx\n"
    yield head(b"Subject:no blank", b"X-Empty:") + b"\nx\n"
    yield head(b"Subject: =?utf-8?B?broken") + b"\nx\n"
    yield head(b"Subject: =?no-such?Q?abc?=") + b"\nx\n"
    yield b"Subject: only a header"
    yield b"\nonly a body\n"
    yield head(b"Subject: x") + multipart(b"mixed", [text, part(b"message/rfc822", b"Subject: i\n\nin\n"),
                                                     part(b"text/plain", b"mine\n", b"note.txt")])
    yield head(b"Subject: x") + multipart(b"mixed", [part(b"text/plain", b"mine\n", b"note.txt"),
                                                     part(b"message/rfc822", b"Subject: i\n\nin\n")])
    yield head(b"Subject: x") + multipart(b"mixed", [part(b"text/plain", b"alone\n", b"note.txt")])
    yield head(b"Subject: x") + multipart(b"alternative", [text, part(b"text/html", b"<p>h</p>")], b"with space: 1")
    picture = part(b"image/png", PICTURE, b"p.png", b"attachment", "base64")
    whole = head(b"Subject: x") + multipart(b"mixed", [text, picture])
    for _ in range(25):
        yield whole[:rng.randrange(120, len(whole))]


def html(rng):
    for body in (
            "<p>caf&eacute; &rarr; &#150; &amp;lt</p>", 'a <input value="a>b"> b', "<?php echo 1; ?>shown",
            "<script>if (a<b) 1</script>x<style>p {}</style>", "<table><tr><td>a<td>b<tr><td>c</table>",
            "<p>soft&shy;hyphen no&nbsp;break", "a<br>b<br/>c", "<b><i>over</b>lap</i>", "<!-- <p>hidden --> shown",
            "<!DOCTYPE html><html><head><title>t</title></head><body><h1>H</h1>text</body></html>", "1 < 2 &unknown; 3",
            "<div>日本語</div>\n\n<div>本文</div>", "<pre>a  b\nc</pre>", "unclosed <p>one<p>two<ul><li>x<li>y"):
        yield head(b"Subject: x") + part(b"text/html", body.encode(), form="8bit")
        yield head(b"Subject: x") + multipart(b"related", [part(b"text/html", body.encode(), form="base64"),
                                                           part(b"image/png", PICTURE, b"i.png", b"inline", "base64")])


def mails():
    for kind in (words, raw_headers, bodies, trees, names, addresses, damaged, html):
        rng = random.Random(kind.__name__)
        for number, made in enumerate(kind(rng), 1):
            yield f"{kind.__name__}-{number}", made
