"""The Python package: what it gives is what the tool gives, and whatever it is given, it stays in its buffers."""
import array
import copy
import doctest
import importlib
import inspect
import json
import mmap
import os
import pickle
import pkgutil
import random
import subprocess
import sys
import threading
from pathlib import Path

import npxlate
import pytest
from npxlate import _translator

PACKAGE = Path(npxlate.__file__).parent
TOOL = PACKAGE / "npxlate"
SOURCE = Path(os.environ["NPXLATE_SOURCE"])
EVERY = pytest.mark.parametrize("translator", npxlate.translators(), ids=lambda translator: translator.name)


def tool(*arguments, stdin=""):
    return subprocess.run([TOOL, *arguments], input=stdin, capture_output=True, text=True, check=False)


def arguments_of(translator):
    if "takes_type" in translator.traits:
        return {"entry_type": 3}
    if "takes_key" in translator.traits:
        return {"logical_key": bytes(7) + b"\x05"}
    return {}


def records_of(translator, count, length=None):
    """Random records, some of small values, so that types and counts that are checked pass now and then."""
    source = random.Random(translator.name)
    length = translator.source.most if length is None else length
    for i in range(count):
        yield bytes(source.randrange((256, 8, 2)[i % 3]) for _ in range(length))


def outcome(call):
    """What a call gives, or how it fails, in a form that can be compared."""
    try:
        record = call()
    except npxlate.NpxlateError as error:
        return error.reason, error.status, error.input
    return bytes(record), record.length, record.input, record.input_changed, record.not_written


# ---- Documentation ----

MODULES = ["npxlate"] + [f"npxlate.{module.name}" for module in pkgutil.iter_modules(npxlate.__path__)
                         if module.name.endswith(("error", "library", "translator", "tool"))]


@pytest.mark.parametrize("name", MODULES)
def test_examples_in_the_documentation_hold(name):
    assert doctest.testmod(importlib.import_module(name)).failed == 0


def test_the_page_of_the_package_holds():
    assert doctest.testfile(str(SOURCE / "python" / "README.md"), module_relative=False).failed == 0


def test_the_session_goes_as_it_says():
    done = subprocess.run([sys.executable, str(SOURCE / "examples" / "session.py")], capture_output=True, text=True,
                          check=False)
    assert done.returncode == 0, done.stderr
    lines = done.stdout.splitlines()
    assert lines[3] == "91 00 00 00 00 00 0d 23 0a 00 00 01 42 00 00 00 - program 16 bytes"
    assert lines[-2].startswith("2000 records of 8 bytes; the last: 11 00 01 00 cf 07 00 00")
    assert lines[-1].startswith("22 ipmc_encap_logical_res_xlate returned 22 (NPXLATE_INVALID)")


@pytest.mark.parametrize("name", npxlate.__all__)
def test_everything_public_is_documented_with_an_example(name):
    public = getattr(npxlate, name)
    if name == "__version__":
        return
    text = inspect.getdoc(public)
    assert text, f"{name} has no documentation"
    assert ">>>" in text or name == "Register", f"{name} has no example"
    if inspect.isclass(public):
        for member, value in vars(public).items():
            if not member.startswith("_") and (inspect.isfunction(value) or isinstance(value, property)):
                assert inspect.getdoc(value), f"{name}.{member} has no documentation"


def test_the_types_are_checked():
    checked = subprocess.run([sys.executable, "-m", "mypy", "--strict", "--python-version", "3.9",
                              "--cache-dir=/dev/null", str(PACKAGE)], capture_output=True, text=True, check=False)
    assert checked.returncode == 0, checked.stdout + checked.stderr
    assert (PACKAGE / "py.typed").exists()


# ---- What there is ----

def test_tables_and_translators_are_those_of_the_tool():
    listed = json.loads(tool("tables", "--json").stdout)
    assert len(npxlate.tables()) == len(listed["tables"]) == 128
    for table, entry in zip(npxlate.tables(), listed["tables"]):
        assert (table.id, table.title) == (entry["table"], entry["title"])
        for role in ("key", "result", "reverse"):
            translator = getattr(table, role)
            assert (translator.name, translator.role) == (entry[role]["name"], role)
            assert table.id in translator.tables
            assert npxlate.translator(table.id, role) is translator
            assert translator.title == entry[role]["title"]
            assert translator.logical == tuple(entry[role]["logical"].values())
            assert translator.physical == tuple(entry[role]["physical"].values())
            assert translator.traits == set(entry[role]["traits"])
    assert npxlate.traits() == {trait["trait"]: trait["meaning"] for trait in listed["traits"]}
    by_name = {entry["name"] for entry in listed["by_name"]}
    assert {translator.name for translator in npxlate.translators() if not translator.tables} == by_name
    assert len(npxlate.translators()) == len({translator.name for translator in npxlate.translators()})


def test_the_version_is_that_of_the_tool():
    assert tool("--version").stdout == f"npxlate {npxlate.__version__}\n"


@pytest.mark.parametrize("engine", ["parse", "resolve", "learn"])
def test_registers_are_those_of_the_tool(engine):
    listed = json.loads(tool("registers", engine, "--json").stdout)["registers"]
    assert npxlate.registers(engine) == tuple((entry["number"], entry["value"]) for entry in listed)


def test_what_there_is_not_is_told():
    for wrong, expected in (
            (lambda: npxlate.registers("learning"), "expected one of parse, resolve, learn"),
            (lambda: npxlate.translator(128), "there is no table 128: expected a table id from 0 to 127"),
            (lambda: npxlate.translator(-1), "there is no table -1: expected a table id from 0 to 127"),
            (lambda: npxlate.translator("span_fwd_st_xlate_resul"), "did you mean span_fwd_st_xlate_result?"),
            (lambda: npxlate.translator(4, "back"), "there is no role 'back': expected one of key, result, reverse"),
            (lambda: npxlate.key("modulo_xlate_result", bytes(8)), "is a result translator: expected a key"),
            (lambda: npxlate.translators(family="mice"), "there is no family 'mice': expected one of adjacency"),
            (lambda: npxlate.set_tx_adj_key_max(65536), "expected a number from 0 to 65535"),
            (lambda: npxlate.virtual_queue_index(-1, 0), "expected a number from 0 to 4294967295")):
        with pytest.raises(npxlate.NpxlateError) as caught:
            wrong()
        assert expected in caught.value.reason
        assert caught.value.status is None
    with pytest.raises(TypeError):
        npxlate.translator(4.0)


# ---- One record ----

def test_the_sample_entries_come_out_as_the_tool_translates_them():
    entries = SOURCE / "examples" / "entries.jsonl"
    translated = tool("batch", "--quiet", str(entries))
    assert translated.returncode == 0
    count = 0
    for before, after in zip(entries.read_text().splitlines(), translated.stdout.splitlines()):
        before, after = json.loads(before), json.loads(after)
        for role in ("key", "result"):
            if role in before:
                made = getattr(npxlate, role)(before["table"], bytes.fromhex(before[role]))
                assert made.hex() in after.values()
                count += 1
    assert count == 200


@EVERY
def test_a_record_comes_out_as_the_tool_translates_it(translator):
    options = [f"--{'key' if name == 'logical_key' else 'type'}={value.hex() if isinstance(value, bytes) else value}"
               for name, value in arguments_of(translator).items()]
    for record in records_of(translator, 3):
        printed = json.loads(tool(translator.role, translator.name, "-", "--json", *options, stdin=record.hex()).stdout)
        try:
            made = translator(record, **arguments_of(translator))
        except npxlate.NpxlateError as error:
            assert printed["bytes"] is None
            assert (error.status, error.status_name) == (printed["status"], printed["status_name"])
            assert error.input.hex() == printed.get("input", record.hex())
        else:
            assert made.hex() == printed["bytes"]
            assert made.length == printed["length"]
            assert made.not_written.hex() == printed.get("not_written", bytes(len(made)).hex())
            assert made.input.hex() == printed.get("input", record.hex())
            assert made.input_changed == ("input" in printed)


@EVERY
def test_wrong_lengths_and_arguments_are_refused_before_the_call(translator):
    arguments = arguments_of(translator)
    for length in {0, translator.source.least - 1, translator.source.most + 1, 200, 100000} - {-1}:
        if any(lengths.allows(length) for lengths in translator.takes):
            continue
        with pytest.raises(npxlate.NpxlateError, match="takes a .* record of") as caught:
            translator(bytes(length), **arguments)
        assert caught.value.status is None
    record = bytes(translator.source.most)
    for name, value in (("entry_type", 1), ("logical_key", bytes(8))):
        wrong = {key: value for key, value in arguments.items() if key != name} if name in arguments else {
            **arguments, name: value}
        with pytest.raises(npxlate.NpxlateError, match=name):
            translator(record, **wrong)
    for wrong in (None, 5, "00", [1, 2]):
        with pytest.raises(TypeError):
            translator(wrong, **arguments)


def test_fourth_arguments_are_checked():
    with pytest.raises(npxlate.NpxlateError, match="expected a number from 0 to"):
        npxlate.reverse(52, bytes(32), entry_type=1 << 32)
    with pytest.raises(npxlate.NpxlateError, match="takes a logical key of 8 bytes, but 7 came"):
        npxlate.reverse(92, bytes(8), logical_key=bytes(7))
    assert len(npxlate.reverse(92, bytes(8), logical_key=b"\xff" * 8)) == 8
    assert len(npxlate.reverse(92, bytes(8), logical_key=bytes(8))) == 12


def test_what_the_record_that_goes_in_comes_to_is_shown_and_the_own_one_left_alone():
    # 1,000 is above 128, the most that the SPAN result takes: it lowers the value in its input.
    changing = npxlate.translator("span_fwd_st_xlate_result")
    mine = bytearray(b"\xff" * changing.source.most)
    record = changing(mine)
    assert record.input_changed
    assert record.input != bytes(mine)
    assert mine == b"\xff" * changing.source.most


def test_before_is_what_is_left_standing():
    for translator in npxlate.translators():
        arguments = arguments_of(translator)
        record = next(records_of(translator, 3))
        try:
            over_zeros = translator(record, **arguments)
            over_ones = translator(record, before=b"\xff" * len(over_zeros), **arguments)
        except npxlate.NpxlateError:
            continue
        assert bytes(a ^ b for a, b in zip(over_zeros, over_ones)) == over_zeros.not_written, translator
    with pytest.raises(npxlate.NpxlateError, match="before has 169 bytes: expected at most 168"):
        npxlate.result(4, bytes(30), before=bytes(169))


def test_the_failure_that_is_hidden_in_a_success_is_told():
    with pytest.raises(npxlate.NpxlateError, match="stored no length: it does not take this record") as caught:
        npxlate.result(115, bytes([0, 0, 5]) + bytes(77))  # five segment identifiers
    assert caught.value.status == 0


def test_a_record_can_be_copied_and_stored():
    record = npxlate.result(17, bytes(8))
    for same in (copy.copy(record), copy.deepcopy(record), pickle.loads(pickle.dumps(record))):
        assert same == record
        assert (same.length, same.translator, same.not_written) == (8, record.translator, bytes(8))


def test_the_highest_marked_index_is_the_librarys():
    # With L0.5 clear, P0.7 says whether L8-10 is at most TX_ADJ_KEY_MAX.
    record = bytearray(61)
    record[8:10] = (0x1800).to_bytes(2, "little")
    assert npxlate.result(7, record)[0] & 0x80 == 0
    npxlate.set_tx_adj_key_max(0x1800)
    try:
        assert npxlate.result(7, record)[0] & 0x80
        assert npxlate.explain(7, record).out == npxlate.result(7, record).hex()
    finally:
        npxlate.set_tx_adj_key_max(0x0FFF)


# ---- Many records ----

@pytest.fixture(params=["compiled loop", "ctypes"])
def loop(request, monkeypatch):
    if request.param == "ctypes":
        monkeypatch.setattr(_translator, "LOOP", None)
    else:
        assert _translator.LOOP is not None


@EVERY
def test_many_records_come_out_as_each_alone(translator, loop):
    lengths = {lengths.most for lengths in translator.takes} | {max(1, translator.source.least)}
    for length in lengths - {0}:
        if not any(allowed.allows(length) for allowed in translator.takes):
            continue
        if length < translator.source.least:
            with pytest.raises(npxlate.NpxlateError, match="one behind the other"):
                translator.many(bytes(4 * length), size=length, **arguments_of(translator))
            continue
        records = list(records_of(translator, 50, length))
        many = translator.many(b"".join(records), size=length, **arguments_of(translator))
        assert len(many) == len(records)
        for i, record in enumerate(records):
            assert outcome(lambda: many[i]) == outcome(lambda: translator(record, **arguments_of(translator)))
            assert many.statuses[i] == 0 or outcome(lambda: many[i])[1] == many.statuses[i]


@EVERY
def test_many_records_are_written_between_the_guards(translator, loop):
    size = translator.source.most
    if size == 0:
        return  # there is nothing of which there could be many
    records = b"".join(records_of(translator, 30))
    expected = translator.many(records, size=size, **arguments_of(translator))
    room = bytearray(b"\xa5" * (len(expected.out) + 512))
    out = memoryview(room)[256:256 + len(expected.out)]
    out[:] = bytes(len(out))
    mine = bytearray(records)
    many = translator.many(mine, size=size, out=out, **arguments_of(translator))
    assert bytes(many.out) == bytes(out) == bytes(expected.out)
    assert room[:256] == room[-256:] == b"\xa5" * 256
    assert mine == records


def test_many_takes_whatever_has_a_buffer(tmp_path, loop):
    translator = npxlate.translator(17)
    records = b"".join(records_of(translator, 20))
    expected = bytes(translator.many(records).out)
    path = tmp_path / "records"
    path.write_bytes(records)
    with open(path, "rb") as file, mmap.mmap(file.fileno(), 0, access=mmap.ACCESS_READ) as mapped:
        assert bytes(translator.many(mapped).out) == expected
    for same in (bytearray(records), memoryview(records), memoryview(bytearray(records)).cast("B", (20, 8)),
                 array.array("Q", records), memoryview(b"x" + records)[1:]):
        assert bytes(translator.many(same).out) == expected
    assert len(translator.many(b"")) == 0
    assert translator.many(records)[-1] == translator(records[-8:])
    assert translator.many(records)[3:5] == [translator(records[24:32]), translator(records[32:40])]
    with pytest.raises(IndexError):
        translator.many(records)[20]


def test_wrong_buffers_are_refused():
    translator = npxlate.translator(17)
    shared = bytearray(64)
    for call, message in (
            (lambda: translator.many(bytes(9)), "records has 9 bytes: expected a multiple of 8"),
            (lambda: translator.many(bytes(18), size=9), "takes a logical record of 8 bytes, but 9 came"),
            (lambda: translator.many(memoryview(bytes(32))[::2]), "expected a contiguous buffer"),
            (lambda: translator.many(bytes(16), out=bytes(16)), "out is read-only"),
            (lambda: translator.many(bytes(16), out=bytearray(15)), "out has 15 bytes: expected 16"),
            (lambda: translator.many(memoryview(shared)[:16], out=memoryview(shared)[8:24]), "out overlaps"),
            (lambda: npxlate.translator(0).many(bytes(16)), "takes records of 0 to 64 bytes: expected a size"),
            (lambda: npxlate.translator(0).many(bytes(16), size=0), "expected a size of at least 1")):
        with pytest.raises(npxlate.NpxlateError, match=message):
            call()
    for wrong in (None, 16, "records", [1]):
        with pytest.raises(TypeError):
            translator.many(wrong)
        with pytest.raises(TypeError):
            translator.many(bytes(16), out=wrong or 1.0)


def test_refused_records_do_not_stop_the_others(loop):
    translator = npxlate.translator("srv6_info_res_xlate")
    refused = bytes([0, 0, 5]) + bytes(translator.source.most - 3)  # five segment identifiers
    many = translator.many(bytes(translator.source.most) + refused + bytes(translator.source.most))
    assert [status for status in many.statuses] == [0, 34, 0]
    assert many[0] == many[2]
    with pytest.raises(npxlate.NpxlateError, match="more than 4 segment identifiers"):
        many[1]


def test_many_shows_what_came_of_the_records_that_went_in(loop):
    translator = npxlate.translator("span_fwd_st_xlate_result")
    mine = bytearray(b"\xff" * translator.source.most * 3)
    many = translator.many(mine)
    assert mine == b"\xff" * len(mine)
    assert bytes(many.input) == translator(mine[:translator.source.most]).input * 3
    assert many[2].input_changed


def test_many_works_with_numpy(loop):
    numpy = pytest.importorskip("numpy")
    translator = npxlate.translator(17)
    records = numpy.zeros((5, 8), dtype=numpy.uint8)
    records[:, 7] = range(5)
    many = translator.many(records)
    out = numpy.asarray(many.out).reshape(-1, many.size)
    assert out.shape == (5, 8)
    assert [bytes(row) for row in out] == [bytes(translator(bytes(row))) for row in records]
    assert numpy.asarray(many.statuses).tolist() == [0] * 5
    structured = numpy.zeros(5, dtype=[("word", "<u4"), ("address", "<u4")])
    structured["address"] = range(5)
    assert [record[4] for record in translator.many(structured)] == list(range(5))


def test_threads_translate_at_once():
    translator = npxlate.translator(4)
    records = list(records_of(translator, 200))
    expected = [translator(record) for record in records]
    found = []

    def translate():
        found.append([translator(record) for record in records])

    threads = [threading.Thread(target=translate) for _ in range(8)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert found == [expected] * 8


# ---- What the tool knows ----

@EVERY
def test_every_translator_can_be_laid_out(translator):
    assert npxlate.layout(translator.name).translator == translator.name


def test_what_the_tool_says_is_an_object():
    record = bytes.fromhex("0000000001020304")
    explained = npxlate.explain(17, record)
    assert explained.status == 0
    assert explained.to_json() == json.dumps(json.loads(tool("explain", "17", record.hex(), "--json").stdout))
    assert {"translator", "status", "out"} <= set(explained)
    assert "out" in dir(explained)
    assert explained == npxlate.explain(17, record)
    with pytest.raises(AttributeError, match="there is no member 'outs': expected one of translator"):
        explained.outs
    with pytest.raises(KeyError):
        explained["outs"]
    assert npxlate.diff(17, record, record).translator == explained.translator
    assert npxlate.explain(17, bytes(8), "key").role == "key"
    assert npxlate.explain(52, bytes(32), "reverse", entry_type=1).status == 0
    assert npxlate.explain(92, bytes(8), "reverse", logical_key=bytes(8)).status == 0


def test_a_record_of_the_card_is_decoded():
    decoded = npxlate.decode(17, bytes.fromhex("1100010001020304"))
    assert len(decoded.candidates) == 1
    assert decoded.candidates[0].to_json()
    impossible = npxlate.decode(17, bytes.fromhex("1200010001020304"))
    assert impossible.candidates == [] and impossible.nearest


def test_what_the_tool_refuses_is_an_error():
    with pytest.raises(npxlate.NpxlateError, match="takes a logical record of 8 bytes"):
        npxlate.explain(17, bytes(7))
    with pytest.raises(npxlate.NpxlateError, match="there is no table 200"):
        npxlate.explain(200, b"")


def test_a_tool_that_is_none_is_told(monkeypatch, tmp_path):
    monkeypatch.setenv("NPXLATE_TOOL", str(tmp_path / "nothing"))
    with pytest.raises(npxlate.NpxlateError, match="cannot run the tool .*nothing: No such file"):
        npxlate.layout(4)
    monkeypatch.setenv("NPXLATE_TOOL", "/bin/true")
    with pytest.raises(npxlate.NpxlateError, match="/bin/true ended with status 0 and said nothing"):
        npxlate.layout(4)


def test_a_library_that_is_none_is_told(tmp_path):
    for wrong in (str(tmp_path / "nothing.so"), "libc.so.6"):
        done = subprocess.run([sys.executable, "-c", "import npxlate"], capture_output=True, text=True, check=False,
                              env={**os.environ, "NPXLATE_LIBRARY": wrong})
        assert f"ImportError: cannot load {wrong}: " in done.stderr
        assert "name it in NPXLATE_LIBRARY" in done.stderr
