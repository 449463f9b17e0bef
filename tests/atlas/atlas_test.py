"""The atlas as its readers see it. What is expected of bits stands in the header's and the tables' documentation."""

import json
import pathlib
import random
import re
import subprocess
import sys
import tempfile
import unittest

from browser import Browser
from truth import Truth

TOOL, EXPORTS, ENTRIES = sys.argv[1:4]
LEFT, UP, RIGHT, DOWN, HOME, ENTER, ESCAPE = "\ue012", "\ue013", "\ue014", "\ue015", "\ue011", "\ue007", "\ue00c"

RX = "rx_adjacency_type_xlate_result"
RX_A = f"{RX}/variant-a-24-bits"
RX_B = f"{RX}/variant-b"
RX_D = f"{RX}/variant-d"
RX_E = f"{RX}/variant-e"

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
    (RX_B, "L0.6"): "L0.6 only steers",
    ("vrrp_vmac_entry_st_xlate_result", "P2.0"): "P2.0 is always 1.",
    ("vrrp_vmac_entry_st_xlate_result", "L0.0"): "L0.0 is not carried.",
    ("ext_lspa_st_result", "P6.1"): "P6.1 is always 0.",
    ("cfm_logical_hwo_xlate_tx_result", "L0.4"): "L0.4 is always 1.",
    ("edpl_str_xlate_result", "P5.0"): "P5.0 is left as the caller had it.",
    (RX_E, "P6.3"): "P6.3 is computed: queue index",
}


def exported_translators():
    """The names that the library exports, without its tables and helpers."""
    names = re.findall(r"^    ([a-z0-9_]+);", pathlib.Path(EXPORTS).read_text(), re.M)
    return {name for name in names if re.search(r"_xlate|_result$|_key$", name) and not name.endswith("_gdp_xlate")}


def cell(name):
    side, byte, bit = re.fullmatch(r"([LP])(\d+)\.(\d)", name).groups()
    return f'[data-side="{side}"][data-bit="{8 * int(byte) + int(bit)}"]'


def bits_of(text):
    """Bit 0 of byte 0 first."""
    return "".join(str(byte >> bit & 1) for byte in bytes.fromhex(text) for bit in range(8))


# Of each record: the forms that it can be of, the bits that come out, the forms that can have made the bytes given, and what
# then went in: with the free bits clear, and with all of them set.
ON_THE_PAGE = """
    const text = (bits) => bits.map((bit) => bit ?? '~').join('');
    const bytes = (bits) => Array.from({ length: bits.length / 8 }, (_, byte) =>
        [0, 1, 2, 3, 4, 5, 6, 7].reduce((sum, bit) => sum | bits[8 * byte + bit] << bit, 0));
    return arguments[0].map(([name, record, argument, out]) => {
        const translator = records.data.translators.find((one) => one.name === name);
        const given = { argument, txAdjKeyMax: records.data.txAdjKeyMax };
        const forms = records.formsOf(translator, record, given);
        const can = out === null ? [] : records.sourcesOf(translator, out, given).can;
        return { forms: forms.map(({ form }) => form.name), out: text(forms[0].out), sources: can.map(({ form }) => form.name),
            bytes: can.flatMap((one) => [one.in, one.in.map((bit, at) => (one.fates[at] === 'free' ? 1 : bit))]
                .map((bits) => ({ in: bytes(bits), left: records.bitsOf(one.form).out.flatMap(({ kind }, at) => (kind === 'left_alone' ? [at] : [])) }))) };
    });"""


class Atlas(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(cls.folder.cleanup)
        cls.path = pathlib.Path(cls.folder.name, "atlas.html")
        subprocess.run([TOOL, "atlas", str(cls.path)], check=True)
        cls.page = cls.path.read_text()
        cls.truth = Truth(TOOL)
        cls.browser = Browser()
        cls.addClassCleanup(cls.browser.close)
        cls.browser.open("about:blank")
        cls.browser.log("performance")  # what the browser's own first page asked for
        cls.browser.open(cls.path.as_uri())

    def setUp(self):
        self.type_into("search", "")
        self.go("")

    def go(self, place):
        """To #translator, #translator/form or #translator/form/position."""
        self.browser.run("location.hash = '#' + arguments[0]", place)
        name = place.split("/")[0]
        self.browser.wait_for("return document.title.startsWith(arguments[0])", name or "npxlate atlas")

    def point_to(self, place, bit):
        form = place if "/" in place else f"{place}/first"
        self.go(f"{form}/{bit}")
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

    def form(self):
        return self.text("#form .forms [aria-checked=true] span")

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
        self.assertLess(len(self.page), 1_200_000)

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
        # Only one logical record is as long; it goes in and comes back. L167 is carried neither way.
        self.type_into("search", "L167.7")
        self.assertEqual(self.listed(), [])
        self.type_into("search", "L146.7")
        self.assertEqual(self.listed(), ["nr_ldi_entry_st_result", "nr_ldi_entry_st_logical_xlate_result"])

    def test_the_search_answers_questions(self):
        self.type_into("search", "which tables carry L12-15?")
        listed = self.listed()
        self.assertIn(RX, listed)
        self.assertNotIn("vrrp_vmac_entry_st_xlate_key", listed)  # 8 bytes
        self.assertIn("L12-15", self.hit_of(RX))
        self.type_into("search", "queue index")
        self.assertIn(RX, self.listed())
        self.assertIn("lag_type_xlate_result", self.listed())
        self.assertNotIn("vrrp_vmac_entry_st_xlate_key", self.listed())
        self.assertIn("queue index", self.hit_of(RX))
        self.type_into("search", "mirroring")
        self.assertIn("span_fwd_st_xlate_result", self.listed())
        self.type_into("search", "receive adjacency reverse")
        self.assertEqual(self.listed(), ["rx_adjacency_type_logical_xlate_result"])
        self.type_into("search", "0x91")
        self.assertIn("nr_ldi_entry_st_result", self.listed())
        self.assertNotIn("vrrp_vmac_entry_st_xlate_key", self.listed())

    def hit_of(self, name):
        return self.browser.run("""return [...document.querySelectorAll('#list a')]
            .find((one) => one.querySelector('b').textContent === arguments[0]).querySelector('small').textContent""", name)

    def test_a_position_leads_to_a_form_that_carries_it(self):
        self.type_into("search", "rx_adj result L21.0")
        self.browser.press("/", ENTER)
        self.browser.wait_for("return document.activeElement.matches(arguments[0])", cell("L21.0"))
        self.assertTrue(self.partners())

    def test_enter_goes_to_what_was_found(self):
        self.go(RX_D)
        self.browser.press("/")
        self.assertEqual(self.browser.run("return document.activeElement.id"), "search")
        self.browser.press(*"P5.0", ENTER)
        self.browser.wait_for("return document.activeElement.matches(arguments[0])", cell("P5.0"))
        self.assertEqual(self.form(), "variant D")
        self.browser.press("/", *"vrrp_vmac result", ENTER)
        self.browser.wait_for("return document.title.startsWith('vrrp_vmac_entry_st_xlate_result')")
        self.browser.press("/")
        self.browser.press(ESCAPE)
        self.assertEqual(self.browser.run("return document.activeElement.id"), "main")

    def test_forms_are_switched_between(self):
        self.go(RX)
        self.assertEqual(self.form(), "variant A, 24 bits")
        self.browser.run("[...document.querySelectorAll('#form .forms button')].find((one) => one.textContent === 'variant D').click()")
        self.browser.wait_for("return location.hash.endsWith('/variant-d')")
        shown = "return document.querySelector('#form .forms [aria-checked=true]').textContent === arguments[0]"
        self.browser.wait_for(shown, "variant D")
        self.assertIn("Records with L0.5, L0.6 and L1.0 clear, L1.3 set.", self.text("#when"))
        self.browser.press("]")
        self.browser.wait_for(shown, "variant E")
        self.browser.press("[")
        self.browser.wait_for(shown, "variant D")

    def test_forms_have_addresses_of_their_own(self):
        shared = self.browser.run("""return records.data.translators.filter(({ sets }) =>
            sets.some(({ forms }) => new Set(forms.map(({ slug }) => slug)).size !== forms.length)).map(({ name }) => name);""")
        self.assertEqual(shared, [])

    def test_each_layout_stands_once_with_its_condition(self):
        # The member L4 is carried only with L0.3 set.
        self.point_to("lag_type_xlate_result/l0-3-clear", "L4.0")
        self.assertEqual(self.partners(), [])
        self.browser.run("document.getElementById('tab-layouts').click()")
        captions = self.browser.run("return [...document.querySelectorAll('#rows caption')].map((one) => one.innerText.split('\\n'))")
        self.assertEqual(captions, [["every record"], ["member", "when L0.3 set"]])
        self.browser.press(LEFT)
        self.assertEqual(self.text("[role=tab][aria-selected=true]"), "This form")
        self.go("lag_type_xlate_result/member")
        self.browser.wait_for("return document.getElementById('tab-form') !== null")
        self.browser.run("document.getElementById('tab-layouts').click()")
        self.assertIn("this form gets it", self.text("#rows table:last-child caption"))
        self.browser.run("document.getElementById('tab-form').click()")

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
        self.assertEqual(self.paste("01 02 0x03,04:05 06\n07 80", "L"), "8 bytes.")
        self.assertEqual([self.value_of(f"L0.{bit}") for bit in (7, 1, 0)], ["0", "0", "1"])
        self.assertEqual(self.value_of("L7.7"), "1")
        values = self.browser.run("return [...document.querySelectorAll('.record:last-child .byte b')].map((one) => one.textContent)")
        self.assertEqual(values, ["0x06", "0x05", "0x04", "0x03", "0x02", "0x01", "0x07", "0x80"])
        self.paste("")
        self.assertEqual(self.value_of("L0.0"), "")

    def test_a_pasted_record_chooses_its_form(self):
        self.go(RX_A)
        zeros = "00" * 30
        self.assertEqual(self.paste(zeros, "L"), "30 bytes, a record of the form “variant E”.")
        self.assertEqual(self.form(), "variant E")
        self.assertEqual(self.paste("20" + zeros[2:]), "30 bytes, a record of the form “variant A, 32 bits”.")
        self.assertEqual(self.form(), "variant A, 32 bits")
        self.assertEqual(self.value_of("P3.7"), "1")  # moved from L0.5
        # The form of a record is not another one.
        self.go(RX_D)
        self.browser.wait_for("return document.getElementById('pasted').textContent.startsWith('The form shown is not')")
        self.assertNotEqual(self.value_of("L0.5"), "1")
        self.paste("")

    def test_what_came_out_tells_what_can_have_gone_in(self):
        self.go(RX_A)
        # L0.4 clear, L24-27 10.0.0.1 turned round; both the layouts of B and of E can have this.
        self.assertEqual(self.paste("9100000000000d230a00000142000000", "P"), "16 bytes; 2 forms can have made them:")
        candidates = self.browser.run("return [...document.querySelectorAll('#candidates button span')].map((one) => one.textContent)")
        self.assertEqual(candidates, ["variant B", "variant E"])
        self.browser.run("document.querySelectorAll('#candidates button')[1].click()")
        self.assertEqual(self.form(), "variant E")
        self.assertEqual(self.value_of("L24.0"), "1")  # determined
        self.assertEqual(self.value_of("L0.6"), "0")  # chosen, for the form's condition
        self.assertEqual(self.value_of("L29.0"), "x")  # free
        self.assertIn("L0.6 = 0", self.text("#pasted"))
        self.browser.point_at(cell("L0.6"))
        self.assertIn("chosen", self.said())
        self.browser.point_at(cell("L29.0"))
        self.assertIn("free", self.said())
        # No form writes P1.7.
        self.assertIn("no form makes such a record", self.paste("9180000000000d230a00000142000000", "P"))
        self.assertIn("P1.7 = 0", self.text("#paste-message"))
        self.paste("")

    def test_all_sources_of_a_value_are_told(self):
        # More than 64 hops count as one: a hop byte of 3 can be either.
        self.go("ip_leaf_st_xlate_result")
        [physical] = self.truth.translate([("ip_leaf_st_xlate_result", "result", bytes([0, 0, 0, 0, 1]) + bytes(59), 0)])
        self.assertIn("can have made them", self.paste(physical, "P"))
        self.assertIn("One of several values, each by itself: L4 is 1 or above 64", self.text("#pasted"))
        self.assertEqual(self.browser.run("return document.querySelectorAll('.legend .several').length"), 1)
        self.browser.point_at(cell("L4.0"))
        self.assertIn("one of several values", self.said())
        self.browser.point_at("h1")
        self.paste("")

    def test_forms_that_the_bytes_do_not_tell_apart_stand_together(self):
        # Whether L0.0 is set shows in the second triple only, which these zeros do not tell.
        self.go("ip_leaf_st_xlate_result")
        self.assertIn("8 forms can have made them; those together that these bytes do not tell apart",
                      self.paste("510c1801" + "00" * 28, "P"))
        candidates = self.browser.run("return [...document.querySelectorAll('#candidates button span')].map((one) => one.textContent)")
        self.assertEqual(len(candidates), 4)
        self.assertTrue(all(one.count("; or variant A") == 1 for one in candidates), candidates)
        self.assertIn("These bytes do not tell the form from", self.text("#pasted"))
        # The form shown is one of both, and its bits are its own.
        before = self.value_of("L0.0")
        self.browser.run("document.querySelector('#pasted a').click()")
        self.browser.wait_for("return document.querySelector(arguments[0]).textContent !== arguments[1]", cell("L0.0"), before)
        self.assertEqual({before, self.value_of("L0.0")}, {"0", "1"})
        self.paste("")

    def test_what_can_have_gone_in_is_what_decode_says(self):
        """Of records as they are and of damaged ones: the same forms in the same order, with the same bits told."""
        choose = random.Random(17)
        names = self.browser.run("""return records.data.translators.filter(({ role }) => role !== 'reverse')
            .map(({ name, logical }) => [name, logical[1]])""")
        forms = [(layout, form) for layout in self.truth.layouts(choose.sample(names, 60)) for form in layout.forms]
        cases = []
        for layout, form in choose.sample(forms, min(120, len(forms))):
            made = layout.random_record(form, choose)
            [out] = self.truth.translate([(layout.name, layout.role, *made)]) if made else [None]
            if not out or all(layout.is_left_alone(form, at) for at in range(4 * len(out))):
                continue
            damaged = bytearray.fromhex(out)
            damaged[choose.randrange(len(damaged))] ^= 1 << choose.randrange(8)
            cases += [(layout.name, out), (layout.name, damaged.hex())]
        self.assertGreater(len(cases), 100)
        page = self.browser.run("""
            const hex = (bits) => bits.map((bit) => (bit ? 1 : 0)).join('');
            return arguments[0].map(([name, bytes]) => {
                const translator = records.data.translators.find((one) => one.name === name);
                const found = records.sourcesOf(translator, bytes, { argument: null, txAdjKeyMax: records.data.txAdjKeyMax });
                for (const one of found.can) records.openFields(one);
                return { groups: found.groups.map((group) => group.map(({ form, fates }) => ({ form: form.name,
                    ...Object.fromEntries(['determined', 'chosen', 'free'].map((fate) => [fate, hex(fates.map((one) => one === fate))])) }))) };
            });""", [[name, list(bytes.fromhex(out))] for name, out in cases])
        for (name, out), seen in zip(cases, page):
            with self.subTest(translator=name, record=out):
                expected = self.truth.decode(name, out)
                self.assertEqual([[one["form"]] + [other["form"] for other in group if other is not one]
                                  for group in seen["groups"] for one in group],
                                 [[one["form"], *one["also"]] for one in expected])
                for one, other in zip([one for group in seen["groups"] for one in group], expected):
                    for fate in ("determined", "chosen", "free"):
                        self.assertEqual(one[fate], bits_of(other[fate]), f"{fate} in {other['form']}")

    def test_the_fourth_argument_is_asked_for(self):
        self.go("ipmc_encap_logical_res_xlate")
        record = "11" + "00" * 31
        self.assertIn("Give the entry type", self.paste(record, "P"))
        self.assertEqual(len(self.browser.run("return [...document.querySelectorAll('#candidates button')]")), 5)
        self.type_into("argument", "3")
        self.assertEqual(self.text("#paste-message"), "32 bytes, a record of the form “type 3”.")
        self.assertEqual(self.value_of("L0.0") + self.value_of("L0.1"), "11")  # the type is in the logical record
        self.type_into("argument", "x")
        self.assertEqual(self.text("#paste-message.error"), "Entry type is a number from 0 to 4294967295, decimal or hexadecimal after 0x.")
        # A logical record that was read back tells the type with which it was.
        self.type_into("argument", "")
        self.paste("02" + "00" * 47, "L")
        self.assertIn("entry type 2", self.text("#paste-message") + self.text("#candidates") + self.text("#pasted"))
        self.paste("")
        self.go("te_nh_adjacency_type_xlate_result")
        self.assertEqual(self.browser.run("return document.getElementById('setting').value"), "4095")
        self.go(RX)
        self.assertIsNone(self.browser.run("return document.getElementById('argument')"))

    def drawn(self, side):
        return self.browser.run("""return [...document.querySelectorAll(`.bit[data-side=${arguments[0]}]`)]
            .sort((a, b) => a.dataset.bit - b.dataset.bit).map((one) => one.textContent).join('')""", side)

    def assert_drawn(self, side, expected):
        """The bytes in the cells; what is left as the caller had it is not said there, and 0 in the tool's buffer."""
        cells = self.drawn(side)
        bits = bits_of(expected)
        self.assertEqual(re.sub("[^01]", "0", cells[:len(bits)]), bits)

    def shown_form(self):
        return self.browser.run("""const [name, slug] = location.hash.slice(1).split('/');
            const { sets } = records.data.translators.find((one) => one.name === name);
            const { forms } = sets.at(-1);
            return (forms.find((form) => form.slug === slug) ?? forms[0]).name;""")

    def test_sample_records_have_the_bytes_and_the_form_that_the_tool_gives_them(self):
        names = {table: translator["name"]
                 for translator in self.browser.run("return records.data.translators.map(({ name, role, tables }) => ({ name, role, tables }))")
                 for table in translator["tables"] if translator["role"] == "result"}
        samples = [entry for entry in map(json.loads, pathlib.Path(ENTRIES).read_text().splitlines()) if "result" in entry]
        self.assertGreaterEqual(len(samples), 100)
        went_in = []
        for entry in samples:
            name = names[entry["table"]]
            with self.subTest(table=entry["table"], record=entry["result"]):
                explained = self.truth.explain(name, entry["result"])
                self.go(name)
                if not entry["result"]:
                    continue  # nothing to paste
                self.paste(entry["result"], "L")
                self.assertEqual(self.shown_form(), explained["form"])
                self.assert_drawn("L", explained["in"])
                self.assert_drawn("P", explained["out"])
                self.assertIn(explained["status_name"], self.text("#when"))
                if explained["status"] == 0:
                    self.paste(explained["out"], "P")
                    self.assert_drawn("P", explained["out"])
                    self.assertIn(explained["form"], self.browser.run("""
                        const translator = records.data.translators.find(({ name }) => name === arguments[0]);
                        const given = { argument: null, txAdjKeyMax: records.data.txAdjKeyMax };
                        return records.sourcesOf(translator, arguments[1], given).can.map(({ form }) => form.name);""",
                        name, list(bytes.fromhex(explained["out"]))))
                    went_in.append((name, "result", bytes.fromhex(self.text("#pasted code")), explained["out"]))
                self.paste("")
        again = self.truth.translate([(name, role, record, 0) for name, role, record, _ in went_in])
        for (name, _, record, expected), out in zip(went_in, again):
            self.assertEqual(out, expected, f"{name} of {record.hex()}")

    def test_random_records_have_the_bytes_and_the_form_that_the_tool_gives_them(self):
        """A thousand of each family, of all forms alike, through what the box for pasted records calls."""
        choose = random.Random(20240613)
        translators = self.browser.run("""return records.data.translators.map((one) => ({ name: one.name, family: one.family,
            lengths: records.lengths(one, records.inSide(one)), out: records.lengths(one, records.outSide(one)) }))""")
        wanted = [(one["name"], length) for one in translators
                  for length in sorted({one["lengths"][0], sum(one["lengths"]) // 2, one["lengths"][1]})]
        layouts = {}
        for layout in self.truth.layouts(wanted):
            layouts.setdefault(layout.name, []).append(layout)
        for family in sorted({one["family"] for one in translators}):
            forms = [(layout, form) for one in translators if one["family"] == family
                     for layout in layouts[one["name"]] for form in layout.forms]
            with self.subTest(family=family):
                self.check_random(forms, choose)

    def check_random(self, forms, choose):
        cases = []
        while len(cases) < max(1000, len(forms)):
            for layout, form in forms:
                made = layout.random_record(form, choose)
                if made:
                    self.assertEqual([one["form"] for one in layout.forms_of(*made)], [form["form"]], layout.name)
                    cases.append((layout, form, *made))
        library = self.truth.translate([(layout.name, layout.role, record, argument) for layout, _, record, argument in cases])
        page = self.browser.run(ON_THE_PAGE, [[layout.name, list(record), argument, out and list(bytes.fromhex(out))]
                                              for (layout, _, record, argument), out in zip(cases, library)])
        backwards = []
        for (layout, form, record, argument), out, seen in zip(cases, library, page):
            what = f"{layout.name} of {record.hex()} with {argument}"
            self.assertEqual(seen["forms"], [form["form"]], what)
            if out is None:
                self.assertTrue(form["status"] != 0 or form["length"] is None, what)
                continue
            # The tool's buffer was 0; the cells say nothing of what is left as the caller had it.
            # More may be written than the length that is stored says, and less than the buffer holds.
            self.assertEqual(seen["out"].replace("~", "0").ljust(4 * len(out), "0")[:4 * len(out)], bits_of(out), what)
            self.assertTrue(all(layout.is_left_alone(form, at) for at, bit in enumerate(seen["out"]) if bit == "~"), what)
            if set(seen["out"]) == {"~"}:
                continue  # any bytes can stand there after it
            self.assertIn(form["form"], seen["sources"], what)
            for source in seen["bytes"]:
                backwards.append((layout.name, layout.role, bytes(source["in"]), argument, out, source["left"], what))
        again = self.truth.translate([case[:4] for case in backwards])
        for (*_, expected, left, what), out in zip(backwards, again):
            self.assertIsNotNone(out, what)
            # A buffer that held what came out holds it again.
            kept = "".join(b if at in left else a for at, (a, b) in enumerate(zip(bits_of(out), bits_of(expected))))
            self.assertEqual((len(out), kept), (len(expected), bits_of(expected)), f"backwards, {what}")

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


NAMES = """
[[record]]
table = 4
fields = [
    { name = "labelled", at = "L0.5" },
    { name = "queue", at = "L4-5", as = "hex" },
    { name = "range", at = "L8", words = "range" },
    { name = "next.mtu", at = "L12-13", union = "next" },
    { name = "next.context", at = "L12-15", union = "next" },
    { name = "nexthop", at = "L24-27", as = "ipv4" },
    { name = "<b>spare", at = "L3" },
]
when = { "next.mtu" = "labelled=0", "next.context" = "labelled=1" }
[record.words.range]
none = 0
four = 4
quad = 4
"""

# A name of every style, of bits in several orders.
STYLES = """
[[record]]
table = 13
fields = [
    { name = "n", at = "L0-7", as = "number" },
    { name = "s", at = "L8-9 L10.3-0", as = "signed" },
    { name = "s64", at = "L96-103", as = "signed" },
    { name = "h", at = "L11-19", as = "hex" },
    { name = "f", at = "L20.3", as = "flag" },
    { name = "l", at = "L21-22 L23.3-0", as = "label" },
    { name = "v4", at = "L24-27", as = "ipv4", order = "big" },
    { name = "v4l", at = "L28-31", as = "ipv4" },
    { name = "v6", at = "L32-47", as = "ipv6" },
    { name = "v6l", at = "L48-63", as = "ipv6", order = "little" },
    { name = "m", at = "L64-69", as = "mac" },
    { name = "b", at = "L70-76", as = "bytes" },
    { name = "bl", at = "L77-79", as = "bytes", order = "little" },
    { name = "w", at = "L80.1-0", words = "w" },
    { name = "split", at = "L82 L81.7-4", as = "number" },
    { name = "u.a", at = "L84-85", union = "u" },
    { name = "u.b", at = "L84", union = "u" },
]
when = { "u.a" = ["f=1 w=two", "L80.0=0"], "u.b" = "L83=0x12" }
[record.words.w]
two = 2
deux = 2
three = 3
"""


class NamedAtlas(unittest.TestCase):
    """The page with a names file."""

    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(cls.folder.cleanup)
        cls.browser = Browser()
        cls.addClassCleanup(cls.browser.close)

    def open(self, names):
        file, page = (pathlib.Path(self.folder.name, name) for name in ("names.toml", "atlas.html"))
        file.write_text(names)
        subprocess.run([TOOL, "atlas", "--names", str(file), str(page)], check=True)
        self.browser.open("about:blank")
        self.browser.open(page.as_uri())
        return file

    def text(self, css):
        return self.browser.run("return document.querySelector(arguments[0])?.textContent", css)

    def type_into(self, element_id, text):
        self.browser.run("""const element = document.getElementById(arguments[0]);
            element.value = arguments[1]; element.dispatchEvent(new Event('input'));""", element_id, text)

    def names(self):
        """The rows of the table of names."""
        self.browser.run("document.getElementById('tab-names').click()")
        return self.browser.run("""return [...document.querySelectorAll('#rows tbody tr')]
            .map((row) => [...row.children].map((one) => one.textContent))""")

    def go(self, place):
        self.browser.run("location.hash = '#' + arguments[0]", place)
        self.browser.wait_for("return document.title.startsWith(arguments[0])", place.split("/")[0])

    def test_names_stand_beside_the_positions(self):
        self.open(NAMES)
        self.go(f"{RX_E}/L24.0")
        self.browser.wait_for("return document.activeElement.matches(arguments[0])", cell("L24.0"))
        self.assertIn("Called nexthop[0].", self.text("#said"))
        rows = self.browser.run("return [...document.querySelectorAll('#rows tbody tr')].map((row) => row.textContent)")
        self.assertIn("P8-11L24-27Rbytes reversed [nexthop]", rows)
        self.assertTrue(any(row.startswith("P6-7") and "[queue, range]" in row for row in rows), rows)
        # Variant E has L0.5, labelled, clear, and so the MTU; variant A has it set: then it is the context.
        self.assertEqual([name for name, *_ in self.names()], ["labelled", "queue", "range", "next.mtu", "nexthop", "<b>spare"])
        self.go(RX_A)
        self.browser.wait_for("return location.hash.includes('variant-a')")
        self.browser.wait_for("return document.querySelector('#form .forms [aria-checked=true] span').textContent.startsWith('variant A')")
        self.assertNotIn("next.mtu", [name for name, *_ in self.names()])
        # A translator without names is as it was.
        self.go("ext_lspa_st_result")
        self.assertIsNone(self.text("#tab-names"))

    def test_values_are_those_of_the_pasted_record(self):
        self.open(NAMES)
        self.go(RX)
        self.type_into("paste", "0000000023010000040000004200000000000000000000000100000a0000")
        self.assertEqual(self.names(), [
            ["labelled", "L0.5", "0"], ["queue", "L4-5", "0x123"], ["range", "L8", "four"], ["next.mtu", "L12-13", "66"],
            ["nexthop", "L24-27", "10.0.0.1"], ["<b>spare", "L3", "0"]])
        self.browser.run("document.getElementById('paste-side').value = 'P'")
        self.type_into("paste", "9100000000000d230a00000142000000")
        self.browser.run("[...document.querySelectorAll('#candidates button')].find((one) => one.textContent.startsWith('variant E')).click()")
        names = self.names()
        self.assertIn(["nexthop", "L24-27", "10.0.0.1"], names)
        self.assertIn(["<b>spare", "L3", "0 — free"], names)

    def test_the_search_finds_names(self):
        self.open(NAMES)
        self.type_into("search", "NextHop")
        found = self.browser.run("""return [...document.querySelectorAll('#list a')].filter((one) => one.checkVisibility())
            .map((one) => [one.querySelector('b').textContent, one.querySelector('small').textContent, one.getAttribute('href')])""")
        self.assertEqual([name for name, *_ in found], [RX, "rx_adjacency_type_logical_xlate_result"])
        self.assertIn("[nexthop]", found[0][1])
        self.assertTrue(found[0][2].endswith("/L24.0"), found[0][2])
        self.type_into("search", "spare result")
        self.assertEqual(self.text("#list a:not([hidden]) small"), "<b>spare: L3")

    def test_values_of_every_style_are_written_as_the_tool_writes_them(self):
        file = self.open(STYLES)
        name = "nr_ldi_entry_st_result"
        choose = random.Random(20)
        records = [choose.randbytes(168) for _ in range(20)]
        records += [bytes(168), bytes([255]) * 168]
        for _ in range(60):  # addresses with runs of zeros, and both ways in which IPv4 stands in IPv6
            record = bytearray(choose.choice(records[:20]))
            for at in (32, 48):
                groups = [choose.choice([0, 0, 0, 0xffff, choose.randrange(65536)]) for _ in range(8)]
                record[at:at + 16] = b"".join(group.to_bytes(2, "big") for group in groups)
            if choose.random() < 0.3:
                record[32:42] = bytes(10)
            record[80], record[83] = choose.randrange(4), choose.choice([0x12, 0])
            records.append(bytes(record))
        page = self.browser.run("""
            const translator = records.data.translators.find(({ name }) => name === arguments[0]);
            return arguments[1].map((bytes) => {
                const [one] = records.formsOf(translator, bytes, { argument: null, txAdjKeyMax: 4095 });
                return records.namesFor(one.form, one.in).map((name) => [name.name, records.valueOfName(name, name.bits.map((bit) => one.in[bit]))]);
            });""", name, [list(record) for record in records])
        for record, seen in zip(records, page):
            explained = subprocess.run([TOOL, "explain", name, "--json", "--names", str(file), record.hex()], check=True, capture_output=True, text=True)
            self.assertEqual(seen, [[one["name"], one["value"]] for one in json.loads(explained.stdout)["names"]], record.hex())

    def test_without_names_the_page_is_as_it_is(self):
        plain, empty = (subprocess.run([TOOL, "atlas", "-", *more], check=True, capture_output=True).stdout
                        for more in ([], ["--names", "/dev/null"]))
        self.assertEqual(plain, empty)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
