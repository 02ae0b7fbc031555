# Names, OPN slots, the catalogue and device records from the module, held against the
# tool's --json answers over a sample of the shipped data.
import os
import warnings

import pgmdev
import pytest
from conftest import run_tool, SOURCE_DIR, sample, tool_error, tool_json

PARTS = sample(tool_json("catalog", "parts", "--hidden"), 25)


@pytest.mark.parametrize("part", PARTS, ids=lambda p: p["part"])
def test_names_and_opn_agree_with_the_tool(part):
    answer = pgmdev.name(part["part"])
    assert answer == tool_json("name", part["part"])
    if answer["opn_enum"] is not None:
        assert pgmdev.opn(answer["opn_enum"]) == tool_json("opn", str(answer["opn_enum"]))
        assert pgmdev.opn_slot(answer["possible_full_name"]) == answer["opn_enum"]
    if answer["opn_hash"] is not None:
        digest = int(answer["opn_hash"], 16)
        assert pgmdev.opn(hash=digest) == tool_json("opn", "--hash", answer["opn_hash"])
        assert pgmdev.opn_hash(answer["possible_full_name"]) == digest
        assert pgmdev.part_of_hash(digest) == pgmdev.opn(hash=digest)["part"]


def test_programmer_and_package_names_resolve_like_the_tool():
    for text in ("ZQ160SM8", "zq160m8c6", "ZQ160"):
        assert pgmdev.name(text) == tool_json("name", text)


def test_the_catalogue_is_named_tuples_of_the_tools_lists():
    assert [f._asdict() for f in pgmdev.families()] == tool_json("catalog", "families")
    assert [d._asdict() for d in pgmdev.devices()] == tool_json("catalog", "devices")
    family = pgmdev.families()[0].family
    assert [d._asdict() for d in pgmdev.devices(family)] == tool_json(
        "catalog", "devices", "--family", family)
    assert [p._asdict() for p in pgmdev.parts(device="ZQ160", released=True)] == tool_json(
        "catalog", "parts", "--device", "ZQ160", "--released")
    assert [p._asdict() for p in pgmdev.parts(contains="m8c", temperature="C")] == tool_json(
        "catalog", "parts", "--contains", "m8c", "--temperature", "C")
    assert all(p.hidden is False for p in pgmdev.parts())


@pytest.mark.parametrize("part", sample(PARTS, 10), ids=lambda p: p["part"])
def test_device_records_agree_with_the_tool(part):
    for kind, name in (("part", part["part"]), ("device", part["device"])):
        record = pgmdev.device(**{kind: name})
        answer = tool_json("device", "--" + kind, name)
        assert dict(record) == answer["record"]
        assert (record.query, record.found_by, record.row_kind, record.number) == (
            answer["query"], answer["found_by"], answer["row_kind"], answer["number"])


def test_family_and_pcf_records_agree_with_the_tool():
    record = pgmdev.device(part="ZQ160M8C6")
    assert record["cfg_dev"] == "SPI_16"
    by_pcf = pgmdev.device(pcf=record["pcf"])
    assert dict(by_pcf) == tool_json("device", "--pcf", record["pcf"])["record"]
    family = pgmdev.families()[0].family
    assert dict(pgmdev.device(family=family)) == tool_json("device", "--family", family)["record"]


@pytest.mark.parametrize("call, args", [
    (lambda: pgmdev.device(part="ZQ160M8C"), ("device", "--part", "ZQ160M8C")),
    (lambda: pgmdev.device(device="ZQ16"), ("device", "--device", "ZQ16")),
    (lambda: pgmdev.device(pcf="nope"), ("device", "--pcf", "nope")),
    (lambda: pgmdev.name("QQQ999"), ("name", "QQQ999")),
    (lambda: pgmdev.opn(999999), ("opn", "999999")),
    (lambda: pgmdev.devices("NOFAMILY"), ("catalog", "devices", "--family", "NOFAMILY")),
])
def test_unknown_names_raise_lookup_error_with_the_tools_sentence(call, args):
    with pytest.raises(LookupError) as raised:
        call()
    assert str(raised.value.args[0]) == tool_error(*args)


def test_a_question_without_a_name_is_a_value_error(monkeypatch, tmp_path):
    # Said before the missing database is: the question itself is the first mistake.
    monkeypatch.setenv("PGMDEV_DEVICE_DB_DIR", str(tmp_path / "none"))
    with pytest.raises(ValueError) as raised:
        pgmdev.device()
    assert str(raised.value) == "say what to look up: family=, device=, part= or pcf="
    # One name only, as the tool takes one option.
    with pytest.raises(ValueError, match="give one of family=, device=, part= or pcf=, not "
                                         "device=, part="):
        pgmdev.device(part="ZQ160M8C6", device="ZQ160")
    assert run_tool("device", "--part", "ZQ160M8C6", "--device", "ZQ160")[0] == 2
    with pytest.raises(FileNotFoundError) as raised:
        pgmdev.device(part="ZQ160M8C6")
    assert str(raised.value) == tool_error("device", "--part", "ZQ160M8C6")


def test_an_unusable_configuration_file_is_a_warning_said_once(monkeypatch, tmp_path):
    missing = tmp_path / "none.ini"
    monkeypatch.setenv("PGMDEV_CONFIG_FILE", str(missing))
    with pytest.warns(RuntimeWarning, match=f"configuration file {missing} named by "
                                            "PGMDEV_CONFIG_FILE is missing"):
        pgmdev.paths()
    with warnings.catch_warnings():
        warnings.simplefilter("error")
        pgmdev.paths()


def test_bad_opn_hash_text_is_a_value_error_and_good_text_a_hash():
    with pytest.raises(ValueError) as raised:
        pgmdev.opn(hash="XYZ")
    assert str(raised.value) == tool_error("opn", "--hash", "XYZ")
    with pytest.raises(ValueError):
        pgmdev.opn(1, hash=2)
    slot = next(p for p in PARTS if pgmdev.name(p["part"])["opn_hash"])
    text = pgmdev.name(slot["part"])["opn_hash"]
    assert pgmdev.opn(hash=text.lower()) == tool_json("opn", "--hash", text)
    # A hash is 48 bits: a wider one is refused, not cut to the slot of its low 48 bits.
    wide = "FFFF" + text[2:]
    for call in (lambda: pgmdev.opn(hash=int(wide, 16)), lambda: pgmdev.opn(hash=wide),
                 lambda: pgmdev.part_of_hash(int(wide, 16))):
        with pytest.raises(ValueError) as raised:
            call()
        assert str(raised.value) == tool_error("opn", "--hash", wide)
    for hash in (-1, 1 << 64):
        with pytest.raises(ValueError, match="not an OPN hash"):
            pgmdev.opn(hash=hash)


def test_the_stubs_and_the_docstrings_cover_the_module():
    import ast
    stubs = ast.parse(open(os.path.join(SOURCE_DIR, "python", "pgmdev.pyi"), encoding="utf-8").read())
    stubbed = {node.name for node in stubs.body if isinstance(node, (ast.FunctionDef, ast.ClassDef))}
    public = {name for name in dir(pgmdev) if not name.startswith("_")}
    assert stubbed == public
    assert all(getattr(pgmdev, name).__doc__ for name in public)
    assert "InternalError" in pgmdev.__doc__ and "FlashManager" in pgmdev.__doc__
