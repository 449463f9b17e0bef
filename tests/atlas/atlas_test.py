"""The atlas as its readers see it. What is expected of bits stands in the header's and the tables' documentation."""

import json
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

from browser import Browser

TOOL, EXPORTS = sys.argv[1:3]
LEFT, UP, RIGHT, DOWN, HOME, ENTER, ESCAPE = "\ue012", "\ue013", "\ue014", "\ue015", "\ue011", "\ue007", "\ue00c"

RX = "rx_adjacency_type_xlate_result"
RX_A = f"{RX}/a-24-bits"
RX_D = f"{RX}/d"

# Where a bit comes from.
SOURCES = {
    (RX_A, "P0.5"): ["L0.4"],
    (RX_A, "P2.3"): ["L0.0"],
    (RX_A, "P8.0"): ["L27.0"],  # four bytes turned round
    (RX_A, "P11.7"): ["L24.7"],
    (RX_A, "P13.3"): ["L14.3"],
    (RX_D, "P0.5"): ["L1.3"],  # this variant's own
    (RX_D, "P5.0"): ["L12.1"],  # shifted right by one
    (RX_D, "P7.4"): ["L12.0", "L14.5"],  # bit 20: the bit shifted there and the lowest one
    ("rx_adjacency_type_logical_xlate_result", "L0.3"): ["P2.2"],
    ("rx_adjacency_type_logical_xlate_result", "L24.0"): ["P8.0"],  # not turned back
    ("vrrp_vmac_entry_st_xlate_key", "P0.7"): ["L5.7"],
    ("vrrp_vmac_entry_st_xlate_key", "P6.1"): ["L6.1"],
    ("ext_lspa_st_result", "P4.7"): ["L2.3"],  # bit 19 of the first label
    ("ext_lspa_st_result", "P6.4"): ["L0.0"],  # and its bit 0
    ("ext_lspa_st_result", "P15.0"): ["L19.0"],  # the flag of the fourth
    ("xid_type_xlate_result/type-1", "P1.5"): ["L0.7"],
    ("xid_type_xlate_result/type-1", "P2.1"): ["L3.3", "L3.4", "L3.5", "L3.6"],  # any of them
    ("pppoe_sid_leaf_st_xlate_result", "P2.7"): ["L2.3"],  # the halves of the byte exchanged
    ("quill_rack_table_xlate_result", "P4.0"): ["L10.0"],
    ("ipv6_leaf_fastip_xlate_key", "P0.0"): ["L15.0"],
    ("te_nh_adjacency_type_xlate_key", "P0.0"): ["L0.0"],
}

# Where a bit goes.
TARGETS = {
    (RX_A, "L27.5"): ["P8.5"],
    (RX_A, "L0.4"): ["P0.5"],
    (RX_D, "L1.3"): ["P0.5", "P1.5", "P3.6"],
    (RX_D, "L12.0"): ["P7.4"],
    ("ext_lspa_st_result", "L4.0"): ["P6.0"],
}

# Bits without a partner.
SENTENCES = {
    (RX_A, "P0.7"): "P0.7 is always 1.",
    (RX_A, "P0.3"): "P0.3 is always 0.",
    (RX_A, "P12.0"): "P12.0 is 0: nothing is written there.",
    (RX_A, "L3.0"): "L3.0 is not carried.",
    (f"{RX}/b", "L0.6"): "L0.6 only steers",
    ("vrrp_vmac_entry_st_xlate_result", "P2.0"): "P2.0 is always 1.",
    ("vrrp_vmac_entry_st_xlate_result", "L0.0"): "L0.0 is not carried.",
    ("ext_lspa_st_result", "P6.1"): "P6.1 is always 0.",
    ("cfm_logical_hwo_xlate_tx_result", "L0.4"): "L0.4 is always 1.",
    ("edpl_str_xlate_result", "P5.0"): "P5.0 is left as the caller had it.",
    (f"{RX}/e", "P6.3"): "P6.3 is computed: queue index",
}


def exported_translators():
    """The names that the library exports, without its tables and helpers."""
    names = re.findall(r"^    ([a-z0-9_]+);", pathlib.Path(EXPORTS).read_text(), re.M)
    return {name for name in names if re.search(r"_xlate|_result$|_key$", name) and not name.endswith("_gdp_xlate")}


def cell(name):
    side, byte, bit = re.fullmatch(r"([LP])(\d+)\.(\d)", name).groups()
    return f'[data-side="{side}"][data-bit="{8 * int(byte) + int(bit)}"]'


class Atlas(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(cls.folder.cleanup)
        cls.path = pathlib.Path(cls.folder.name, "atlas.html")
        subprocess.run([TOOL, "atlas", str(cls.path)], check=True)
        cls.page = cls.path.read_text()
        cls.browser = Browser()
        cls.addClassCleanup(cls.browser.close)
        cls.browser.open("about:blank")
        cls.browser.log("performance")  # what the browser's own first page asked for
        cls.browser.open(cls.path.as_uri())

    def setUp(self):
        self.type_into("search", "")
        self.go("")

    def go(self, place):
        """To #translator, #translator/variant or #translator/variant/position."""
        self.browser.run("location.hash = '#' + arguments[0]", place)
        name = place.split("/")[0]
        self.browser.wait_for("return document.title.startsWith(arguments[0])", name or "npxlate atlas")

    def point_to(self, place, bit):
        variant = place if "/" in place else f"{place}/first"
        self.go(f"{variant}/{bit}")
        self.browser.wait_for("return document.activeElement.matches(arguments[0])", cell(bit))

    def partners(self):
        bits = self.browser.run(
            "return [...document.querySelectorAll('.partner')].map((one) => [one.dataset.side, Number(one.dataset.bit)])")
        return [f"{side}{bit // 8}.{bit % 8}" for side, bit in sorted(bits)]

    def said(self):
        return self.text("#said")

    def text(self, css):
        return self.browser.run("return document.querySelector(arguments[0]).textContent", css)

    def type_into(self, element_id, text):
        self.browser.run("""const element = document.getElementById(arguments[0]);
            element.value = arguments[1]; element.dispatchEvent(new Event('input'));""", element_id, text)

    def variant(self):
        return self.text(".variants [aria-checked=true]")

    def listed(self):
        return self.browser.run(
            "return [...document.querySelectorAll('#list a')].filter((one) => one.checkVisibility()).map((one) => one.querySelector('b').textContent)")

    def test_every_translator_is_there_and_can_be_drawn(self):
        listed = self.browser.run("return [...document.querySelectorAll('#list a b')].map((one) => one.textContent)")
        self.assertEqual(len(listed), len(set(listed)))
        self.assertEqual(set(listed), exported_translators())
        # Each drawn in turn: two records, and a bit for each bit of the longest record of either.
        drawn = self.browser.run("""
            const data = JSON.parse(document.getElementById('data').textContent);
            return data.translators.map(({ name, logical, physical }) => {
                history.replaceState(null, '', '#' + name);
                dispatchEvent(new HashChangeEvent('hashchange'));
                const count = (side) => document.querySelectorAll(`.bit[data-side=${side}]`).length;
                return [name, count('L') === 8 * logical[1] && count('P') === 8 * physical[1]
                    && document.querySelector('h1').textContent === name && document.querySelectorAll('.rows tbody tr').length > 0];
            });""")
        self.assertEqual([name for name, right in drawn if not right], [])
        self.assertLess(len(self.page), 600_000)

    def test_bits_have_the_partners_that_the_documentation_gives_them(self):
        for (place, bit), expected in {**SOURCES, **TARGETS}.items():
            with self.subTest(place=place, bit=bit):
                self.point_to(place, bit)
                self.assertEqual(self.partners(), expected)
        for (place, bit), expected in SENTENCES.items():
            with self.subTest(place=place, bit=bit):
                self.point_to(place, bit)
                self.assertIn(expected, self.said())
                if "computed" not in expected:
                    self.assertEqual(self.partners(), [])

    def test_the_mouse_shows_a_bit_and_leaves_it(self):
        self.go(RX_A)
        self.browser.point_at(cell("P0.5"))
        self.assertEqual(self.partners(), ["L0.4"])
        self.assertTrue(self.said().startswith("P0.5 is moved from L0.4."), self.said())
        self.browser.point_at("h1")
        self.assertEqual(self.partners(), [])
        self.assertEqual(self.said(), "")

    def test_the_search_finds_by_table_name_and_position(self):
        self.type_into("search", "4")
        self.assertEqual(sorted(self.listed()), ["rx_adjacency_type_logical_xlate_result", "rx_adjacency_type_xlate_key", RX])
        self.type_into("search", "table 17 reverse")
        self.assertEqual(self.listed(), ["vrrp_logical_xlate_result"])
        self.type_into("search", "ext_lspa")
        self.assertEqual(self.listed(), ["ext_lspa_st_xlate_key", "ext_lspa_st_result"])
        self.type_into("search", "no such record")
        self.assertEqual(self.listed(), [])
        self.assertEqual(self.text("#found"), f"0 of {len(exported_translators())} translators")
        # Only one logical record has more than 167 bytes; it goes in and comes back.
        self.type_into("search", "L167.7")
        self.assertEqual(self.listed(), ["nr_ldi_entry_st_result", "nr_ldi_entry_st_logical_xlate_result"])

    def test_enter_goes_to_what_was_found(self):
        self.go(RX_D)
        self.browser.press("/")
        self.assertEqual(self.browser.run("return document.activeElement.id"), "search")
        self.browser.press(*"P5.0", ENTER)
        self.browser.wait_for("return document.activeElement.matches(arguments[0])", cell("P5.0"))
        self.assertEqual(self.variant(), "D")
        self.browser.press("/", *"vrrp_vmac result", ENTER)
        self.browser.wait_for("return document.title.startsWith('vrrp_vmac_entry_st_xlate_result')")
        self.browser.press("/")
        self.browser.press(ESCAPE)
        self.assertEqual(self.browser.run("return document.activeElement.id"), "main")

    def test_variants_are_switched_between(self):
        self.go(RX)
        self.assertEqual(self.variant(), "A, 24 bits")
        self.browser.run("[...document.querySelectorAll('.variants button')].find((one) => one.textContent === 'D').click()")
        self.browser.wait_for("return location.hash.endsWith('/d')")
        self.browser.wait_for("return document.querySelector('.variants [aria-checked=true]').textContent === 'D'")
        self.assertIn("L1.3=1", self.text(".holds"))
        self.browser.press("]")
        self.browser.wait_for("return document.querySelector('.variants [aria-checked=true]').textContent === 'E'")
        self.browser.press("[")
        self.browser.wait_for("return document.querySelector('.variants [aria-checked=true]').textContent === 'D'")

    def test_variants_have_addresses_of_their_own(self):
        shared = self.browser.run("""
            const data = JSON.parse(document.getElementById('data').textContent);
            return data.translators.filter(({ name, variants }) => {
                const seen = new Set(variants.map((variant) => variant.name.toLowerCase().replace(/[^a-z0-9]+/g, '-').replace(/^-|-$/g, '')));
                return seen.size !== variants.length;
            }).map(({ name }) => name);""")
        self.assertEqual(shared, [])

    def test_what_only_some_records_get_can_be_added(self):
        # The member L4 is carried only with L0.3 set.
        self.point_to("lag_type_xlate_result/range-4", "L4.0")
        self.assertEqual(self.partners(), [])
        self.assertIn("Used for some records of the variant: L0.3 set.", self.said())
        self.browser.run("document.querySelector('.also input').click()")
        self.browser.point_at(cell("L4.0"))
        self.assertEqual(len(self.partners()), 1)
        self.assertIn("Layout: L0.3 set.", self.sentence_of(self.partners()[0]))

    def sentence_of(self, bit):
        self.browser.point_at(cell(bit))
        return self.said()

    def test_the_arrow_keys_move_within_a_record(self):
        self.point_to(RX_A, "P0.5")
        self.browser.press(RIGHT)
        self.assertTrue(self.said().startswith("P0.4 "))
        self.browser.press(LEFT, LEFT)
        self.assertTrue(self.said().startswith("P0.6 "))
        self.browser.press(LEFT, LEFT, LEFT)  # no further than the first bit
        self.assertTrue(self.said().startswith("P0.7 "))
        per_row = self.browser.run("""const bytes = [...document.querySelectorAll('.record:last-child .byte')];
            return bytes.filter((byte) => byte.offsetTop === bytes[0].offsetTop).length""")
        self.browser.press(DOWN)
        self.assertTrue(self.said().startswith(f"P{per_row}.7 "))
        self.browser.press(UP, RIGHT, RIGHT, ENTER)  # to the partner of P0.5
        self.assertTrue(self.said().startswith("L0.4 "))
        self.browser.press(HOME)
        self.assertTrue(self.said().startswith("L0.7 "))
        self.assertTrue(self.browser.run("return location.hash").endswith("/L0.7"))

    def paste(self, text, side=None):
        self.browser.run("""document.querySelector('.paste').open = true;
            if (arguments[0]) document.getElementById('paste-side').value = arguments[0];""", side)
        self.type_into("paste", text)
        return self.text("#paste-message")

    def value_of(self, bit):
        return self.text(cell(bit))

    def test_a_pasted_record_is_shown_in_place(self):
        self.go("vrrp_vmac_entry_st_xlate_key")
        self.assertEqual(self.paste("01 02 0x03,04:05 06\n07 80"), "8 bytes.")
        self.assertEqual([self.value_of(f"L0.{bit}") for bit in (7, 1, 0)], ["0", "0", "1"])
        self.assertEqual(self.value_of("L7.7"), "1")
        values = self.browser.run("return [...document.querySelectorAll('.record:last-child .byte b')].map((one) => one.textContent)")
        self.assertEqual(values, ["0x06", "0x05", "0x04", "0x03", "0x02", "0x01", "0x07", "0x80"])
        self.paste("")
        self.assertEqual(self.value_of("L0.0"), "")

    def test_a_pasted_record_chooses_its_variant(self):
        self.go(RX_A)
        zeros = "00" * 30
        self.assertEqual(self.paste(zeros), "30 bytes, a record of the variant “E”.")
        self.assertEqual(self.variant(), "E")
        self.assertEqual(self.paste("20" + zeros[2:]), "30 bytes, a record of the variant “A, 32 bits”.")
        self.assertEqual(self.variant(), "A, 32 bits")
        self.assertEqual(self.value_of("P3.7"), "1")  # moved from L0.5
        self.assertEqual(self.paste("ff" * 16, "P"), "16 bytes.")
        self.assertEqual(self.value_of("P3.7"), "1")
        self.assertNotEqual(self.value_of("L0.5"), "1")  # what went in is not known

    def test_what_cannot_be_pasted_is_told(self):
        self.go(RX_A)
        self.assertEqual(self.paste("00 0g"), "“g” is no hexadecimal digit.")
        self.assertEqual(self.text("#paste-message.error"), "“g” is no hexadecimal digit.")
        self.assertEqual(self.paste("00 0"), "3 hexadecimal digits are no whole number of bytes.")
        self.assertEqual(self.paste("00 01"), "These are 2 bytes; the logical record has 30 bytes.")
        self.go("generic_xlate_key")
        self.assertEqual(self.paste("00" * 48), "These are 48 bytes; the logical record has 0 to 47 bytes.")
        self.assertEqual(self.paste("00" * 47), "47 bytes.")

    def test_dark_and_light(self):
        brightness = "return getComputedStyle(document.body).backgroundColor.match(/\\d+/g).slice(0, 3).map(Number).reduce((a, b) => a + b)"
        dark = [{"name": "prefers-color-scheme", "value": "dark"}]
        light = [{"name": "prefers-color-scheme", "value": "light"}]
        choose = "const theme = document.getElementById('theme'); theme.value = arguments[0]; theme.dispatchEvent(new Event('change'));"
        self.browser.devtools("Emulation.setEmulatedMedia", features=dark)
        self.assertLess(self.browser.run(brightness), 200)
        self.browser.run(choose, "light")
        self.assertGreater(self.browser.run(brightness), 600)
        self.browser.devtools("Emulation.setEmulatedMedia", features=light)
        self.browser.run(choose, "dark")
        self.assertLess(self.browser.run(brightness), 200)
        self.browser.run(choose, "auto")
        self.assertGreater(self.browser.run(brightness), 600)

    def test_nothing_sticks_out_of_a_narrow_window(self):
        try:
            self.browser.devtools("Emulation.setDeviceMetricsOverride", width=400, height=800, deviceScaleFactor=1, mobile=False)
            for place in ("", RX_A, "nr_ldi_entry_st_result", "generic_xlate_key"):
                self.go(place)
                self.assertLessEqual(self.browser.run("return document.documentElement.scrollWidth"), 400, place)
            self.assertFalse(self.browser.run("return document.getElementById('side').checkVisibility({ visibilityProperty: true })"))
            self.browser.run("document.getElementById('menu').click()")
            self.assertTrue(self.browser.run("return document.getElementById('side').checkVisibility({ visibilityProperty: true })"))
            self.browser.press(ESCAPE)
            self.browser.wait_for("return !document.getElementById('side').checkVisibility({ visibilityProperty: true })")
        finally:
            self.browser.devtools("Emulation.clearDeviceMetricsOverride")

    def test_zz_no_request_left_the_page_and_nothing_went_wrong(self):
        """After all others: by name, tests run in this order."""
        events = [json.loads(entry["message"])["message"] for entry in self.browser.log("performance")]
        requested = {event["params"]["request"]["url"].split("#")[0] for event in events
                     if event["method"] == "Network.requestWillBeSent"}
        self.assertIn(self.path.as_uri(), requested)
        self.assertEqual({url for url in requested if not url.startswith(("file:", "data:"))}, set())
        self.assertEqual({url for url in requested if url.startswith("file:")}, {self.path.as_uri()})
        self.assertEqual(re.findall(r"https?://\S+", self.page), [])
        self.assertEqual(self.browser.log("browser"), [])


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
