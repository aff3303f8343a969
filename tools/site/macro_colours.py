"""A hook of MkDocs: the macro language gets colours."""
from pygments import lexers, token
from pygments.lexer import RegexLexer, words

WORDS = ("print", "if", "else", "end", "while", "for", "in", "break", "continue", "function", "return", "and", "or", "not", "null")


class MacroLexer(RegexLexer):
    name = "Macro of the small host"
    aliases = ["macro"]
    tokens = {"root": [
        (r"#[<>].*$", token.Generic.Output),
        (r"(?:#|//).*$", token.Comment),
        (r'"(?:\\.|[^"\\\n])*"', token.String),
        (r"0[xX][0-9a-fA-F]+|\d+", token.Number),
        (words(WORDS, prefix=r"\b", suffix=r"\b"), token.Keyword),
        (r"[A-Za-z_]\w*(?=\()", token.Name.Function),
        (r"[A-Za-z_]\w*", token.Name),
        (r"\s+", token.Whitespace),
        (r".", token.Punctuation),
    ]}


lexers.LEXERS["MacroLexer"] = ("macro_colours", MacroLexer.name, ("macro",), (), ())
lexers._lexer_cache[MacroLexer.name] = MacroLexer


def on_config(config):
    return config
