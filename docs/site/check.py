#!/usr/bin/env python3
"""check: looks at the built site for links that lead nowhere and for code that is not as in its source.
Use: check.py HTML-DIRECTORY
SPDX-License-Identifier: MIT
"""

import html.parser
import pathlib
import re
import sys
import urllib.parse


class Page(html.parser.HTMLParser):
    """A built page: its links, the places that links can name, its text without white space."""

    def __init__(self, path):
        super().__init__()
        self.links, self.places, self.words = [], set(), []
        self.skipped = False
        self.feed(path.read_text(encoding="utf-8"))
        self.text = squeezed("".join(self.words))

    def handle_starttag(self, tag, attrs):
        attrs = dict(attrs)
        self.skipped = attrs.get("class") == "lineno"
        self.places |= {attrs[name] for name in ("id", "name") if attrs.get(name)}
        self.links += [attrs[name] for name in ("href", "src") if attrs.get(name)]

    def handle_data(self, data):
        if not self.skipped:
            self.words.append(data)

    def handle_endtag(self, tag):
        self.skipped = False


def squeezed(text):
    return re.sub(r"\s", "", text)


def code_of(page):
    """The code blocks and the code in the sentences of a page of the manual."""
    text = page.read_text(encoding="utf-8")
    block = re.compile(r"^```.*\n((?:.*\n)*?)```$", re.MULTILINE)
    yield from block.findall(text)
    yield from re.findall(r"`([^`\n]+)`", block.sub("", text))


def broken_links(pages):
    for path, page in pages.items():
        for link in page.links:
            url = urllib.parse.urlparse(link)
            if url.scheme or url.netloc:
                continue
            target = (path.parent / urllib.parse.unquote(url.path)).resolve() if url.path else path
            if not target.exists():
                yield f"{path.name}: no file {link}"
            elif url.fragment and target in pages and url.fragment not in pages[target].places:
                yield f"{path.name}: no place {link}"


def changed_code(site, pages):
    for source in sorted(pathlib.Path("docs").glob("*.md")):
        name = "index.html" if source.name == "manual.md" else f"md_docs_{source.stem.replace('-', '_')}.html"
        for code in code_of(source):
            if squeezed(code) not in pages[site / name].text:
                yield f"{source}: not as in the source: {code.strip()}"
    for path, page in pages.items():
        if "@ref" in page.text or "@section" in page.text:
            yield f"{path.name}: a mark of Doxygen is in the text"
        if path.name.endswith("-example.html"):
            source = pathlib.Path("examples", path.name.removesuffix("-example.html")
                                  .replace("_2", "/").replace("_8", ".").replace("__", "_"))
            if squeezed(source.read_text(encoding="utf-8")) not in page.text:
                yield f"{source}: not as in the source"


def main():
    site = pathlib.Path(sys.argv[1]).resolve()
    pages = {path: Page(path) for path in site.rglob("*.html")}
    faults = [*broken_links(pages), *changed_code(site, pages)]
    print(*faults, sep="\n", end="\n" if faults else "", file=sys.stderr)
    return bool(faults)


if __name__ == "__main__":
    sys.exit(main())
