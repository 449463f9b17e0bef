"""Whatever a call is given, it gives a record or raises an error, and never ends the interpreter."""
import npxlate
from hypothesis import given, settings
from hypothesis import strategies as st

ANYTHING = st.one_of(
    st.none(), st.booleans(), st.integers(), st.floats(), st.text(), st.binary(max_size=200), st.lists(st.integers()),
    st.binary(max_size=200).map(bytearray), st.binary(max_size=200).map(memoryview),
    st.binary(max_size=200).map(lambda data: memoryview(data)[::-1]))
TRANSLATORS = st.sampled_from(npxlate.translators())
FOURTH = st.fixed_dictionaries({}, optional={"entry_type": st.one_of(ANYTHING, st.integers(0, 6)),
                                             "logical_key": st.one_of(ANYTHING, st.binary(min_size=8, max_size=8))})


@st.composite
def records(draw, translator):
    """Mostly records of a length that the translator takes."""
    lengths = draw(st.sampled_from(translator.takes))
    length = draw(st.integers(lengths.least, lengths.most))
    return draw(st.one_of(st.binary(min_size=length, max_size=length), ANYTHING))


def right_arguments(translator, draw):
    if "takes_type" in translator.traits:
        return {"entry_type": draw(st.integers(0, 0xFFFFFFFF))}
    if "takes_key" in translator.traits:
        return {"logical_key": draw(st.binary(min_size=8, max_size=8))}
    return {}


@settings(max_examples=2000, deadline=None)
@given(st.data(), TRANSLATORS)
def test_a_call_gives_a_record_or_an_error(data, translator):
    record = data.draw(records(translator))
    arguments = data.draw(st.one_of(FOURTH, st.just(right_arguments(translator, data.draw))))
    before = data.draw(st.one_of(st.just(b""), st.binary(max_size=200), ANYTHING))
    try:
        made = translator(record, before=before, **arguments)
    except (npxlate.NpxlateError, TypeError) as error:
        assert str(error)
    else:
        assert translator.target.least <= len(made) <= translator.target.most or "checks_length" in translator.traits
        assert made == translator(record, before=before, **arguments)
        assert translator(record, **arguments).translator is translator


@settings(max_examples=1000, deadline=None)
@given(st.data(), TRANSLATORS)
def test_a_buffer_of_records_gives_records_or_an_error(data, translator):
    count = data.draw(st.integers(0, 5))
    each = data.draw(st.integers(0, 100))
    buffer = data.draw(st.one_of(st.binary(min_size=count * each, max_size=count * each), ANYTHING))
    size = data.draw(st.one_of(st.none(), st.just(each), st.integers(-1, 200), ANYTHING))
    out = data.draw(st.one_of(st.none(), st.binary(max_size=400).map(bytearray), ANYTHING))
    arguments = right_arguments(translator, data.draw)
    try:
        many = translator.many(buffer, size=size, out=out, **arguments)
    except (npxlate.NpxlateError, TypeError) as error:
        assert str(error)
    else:
        assert len(many.out) == len(many) * many.size
        for i in range(len(many)):
            try:
                assert len(many[i]) <= many.size
            except npxlate.NpxlateError as error:
                assert error.status is not None


@settings(max_examples=500, deadline=None)
@given(st.one_of(ANYTHING, st.integers(-2, 130), st.sampled_from([t.name for t in npxlate.translators()])), ANYTHING,
       ANYTHING)
def test_whatever_is_asked_for_is_there_or_an_error(name, role, record):
    for call in (lambda: npxlate.translator(name, role), lambda: npxlate.key(name, record),
                 lambda: npxlate.result(name, record), lambda: npxlate.reverse(name, record),
                 lambda: npxlate.registers(name), lambda: npxlate.translators(role=role, family=name),
                 lambda: npxlate.virtual_queue_index(name, role)):
        try:
            call()
        except (npxlate.NpxlateError, TypeError) as error:
            assert str(error)
