"""The page of an audit as its readers see it, in a browser without a display."""

import pathlib
import subprocess
import sys
import tempfile

sys.path.insert(0, str(pathlib.Path(__file__).parent.parent / "atlas"))
from browser import Browser  # noqa: E402

npxlate = sys.argv[1]


def entries(kind, values):
    """Of table 17, whose key ends in two bytes that are kept and whose record ends in a value that is."""
    key, result, head = (("key", "result", "00000000") if kind == "programmed"
                         else ("physical_key", "physical_result", "11000100"))
    return "".join(f'{{"table":17,"{key}":"000000000000{i:04x}","{result}":"{head}{value:08x}"}}\n'
                   for i, value in enumerate(values) if value is not None)


with tempfile.TemporaryDirectory() as folder:
    programmed = list(range(0x1000, 0x1040))
    held = [value ^ 0x80 if i < 5 else value for i, value in enumerate(programmed)]
    held[9] = None
    for name, text in (("programmed", entries("programmed", programmed)),
                       ("held", entries("held", held) + "</script><script>alert(1)</script>\n")):
        pathlib.Path(folder, name).write_text(text, encoding="ascii")
    pathlib.Path(folder, "names.toml").write_text(
        '[[record]]\ntable = 17\nfields = [{ name = "group", at = "L7", as = "hex" }]\n', encoding="ascii")
    audit = subprocess.run([npxlate, "audit", f"{folder}/programmed", f"{folder}/held", "--html", f"{folder}/page.html",
                            "--names", f"{folder}/names.toml"], check=False, capture_output=True, text=True)
    assert audit.returncode == 1, audit.stderr

    browser = Browser()
    try:
        browser.open(f"file://{folder}/page.html")
        assert browser.run("return document.querySelectorAll('.pattern').length") == 3
        assert browser.run("return document.querySelector('.pattern summary').textContent").startswith(
            "table 17: 5 entries differ in P7.7 only")
        assert browser.run("return document.querySelectorAll('.finding').length") == 0  # drawn when it is opened
        browser.run("document.querySelector('.pattern').open = true")
        browser.wait_for("return document.querySelectorAll('.finding').length === 5")
        browser.run("document.querySelector('.finding').open = true")
        browser.wait_for("return document.querySelectorAll('.finding .record').length === 2")
        drawn = browser.run("""
            return [...document.querySelectorAll('.finding .record')].map((record) => ({
                bits: record.querySelectorAll('.bit').length,
                differ: [...record.querySelectorAll('.differs')].map((bit) => bit.textContent + ' ' + bit.title),
            }))""")
        assert [record["bits"] for record in drawn] == [64, 64], drawn
        assert [len(record["differ"]) for record in drawn] == [1, 1], drawn
        assert drawn[0]["differ"][0].startswith("0 P7.7 is 0, differs: L4-7"), drawn
        assert drawn[1]["differ"][0].startswith("1 P7.7 is 1, differs: L4-7"), drawn
        assert drawn[1]["differ"][0].endswith("[group]"), drawn
        [row] = browser.run("return [...document.querySelectorAll('.finding .rows tbody tr')].map((row) => row.innerText)")
        assert "group = 0x0" in row and "group = 0x80" in row, row
        rows = browser.run("return [...document.querySelectorAll('.counts tbody tr')].map((row) => row.innerText)")
        assert rows[-1].split() == ["all", "64", "63", "58", "5", "1", "0", "0", "0", "0"], rows
        assert browser.run("return document.querySelectorAll('.sums li').length") == 2
        assert not [line for line in browser.log("browser") if line["level"] == "SEVERE"]
    finally:
        browser.close()
