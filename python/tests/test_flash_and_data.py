# Serial flash, SFDP, HPS definitions, the generators and internal errors from the module,
# held against the tool's answers.
import filecmp
import os

import pgmdev
import pytest
from conftest import SOURCE_DIR, run_tool, sample, tool_error, tool_json

SFDP_DIR = os.path.join(SOURCE_DIR, "tests", "data", "sfdp")


def id_text(record):
    """The read-out of a record's identifier bytes in arrival order."""
    read_out = [0, 0, 0]
    read_out[record["mfc_id_index"]] = record["mfc_id"]
    read_out[record["memory_id_index"]] = record["memory_id"]
    if record["memory_type_index"] != 0xFF:
        read_out[record["memory_type_index"]] = record["memory_type"]
    return "".join(f"{b:02X}" for b in read_out)


def test_flash_manager_records_and_identify_agree_with_the_tool():
    listed = tool_json("flash", "list")
    with pgmdev.FlashManager() as flash:
        assert flash.records == [
            {k: v for k, v in r.items() if k not in ("number", "id", "gate")} for r in listed]
        chips = [r for r in sample(flash.records, 12) if not r["silicon_id"]]
        ids = [id_text(r) for r in chips]
        found = flash.identify(*ids, "C2FFFF")
    answers = tool_json("flash", "identify", *[a for i in ids for a in ("--device-id", i)])
    assert found[:-1] == [a["record"] for a in answers]
    assert found[-1] is None


def test_explain_says_why_as_the_tool_does():
    with pgmdev.FlashManager() as flash:
        assert flash.explain("EF4018") is None
        gated, refused = flash.explain("010219"), flash.explain("6BBB14")
    assert gated == tool_json("flash", "identify", "--device-id", "010219",
                              refused=True)[0]["explanation"]
    assert gated["gated"][0]["switch"] == "PGM_ALLOW_SECTOR_64K"
    assert refused["refused"]["chip"] == "Everspin EM008LX"


def test_flash_manager_is_usable_only_inside_its_with_block():
    flash = pgmdev.FlashManager()
    with pytest.raises(ValueError, match="with block"):
        flash.identify("EF4018")
    with flash as opened:
        assert opened is flash
        assert opened.identify("EF4018")[0]["device_name"]
    with pytest.raises(ValueError, match="with block"):
        flash.records


def test_bad_identifiers_are_value_errors_with_the_tools_sentence():
    with pgmdev.FlashManager() as flash:
        with pytest.raises(ValueError) as raised:
            flash.identify("EF40G8")
    assert str(raised.value) == tool_error("flash", "identify", "--device-id", "EF40G8")


DUMPS = sample(sorted(f for f in os.listdir(SFDP_DIR) if f.endswith(".hex")), 6)


def dump_id(name):
    for line in open(os.path.join(SFDP_DIR, "index.tsv"), encoding="utf-8"):
        cells = line.split("\t")
        if cells[0] == name:
            return cells[3].split()[0].upper()
    raise LookupError(name)


@pytest.mark.parametrize("dump", DUMPS)
def test_sfdp_and_the_user_value_agree_with_the_tool(dump):
    path, chip = os.path.join(SFDP_DIR, dump), dump_id(dump)
    derived = pgmdev.sfdp_derive(path, chip, name="CHIP")
    assert derived == tool_json("flash", "sfdp", path, "--id", chip, "--name", "CHIP")
    assert pgmdev.sfdp_read(path) == derived["tables"]
    code, out, _ = run_tool("flash", "sfdp", path, "--id", chip, "--name", "CHIP", "--value")
    assert code == 0
    value = pgmdev.flash_seal(derived["definition"])
    assert value == out.strip()
    assert pgmdev.flash_encode(pgmdev.flash_decode(value)) == value
    verdict = pgmdev.flash_check(value)
    assert verdict == tool_json("flash", "check", value)
    # The loaded record is the definition, its maker's name in capitals as loading makes it.
    definition = derived["definition"]
    upper = dict(definition, manufacturer_name=definition["manufacturer_name"].upper())
    assert verdict["loads"] and verdict["record"] == upper


def test_check_gives_the_reason_a_value_is_refused(monkeypatch):
    # The dialogue takes a protection divisor of 20, which the loader refuses.
    answers = ("1\nAcme\nAC25Q128\nEF\n2\n40\n1\n1\n0\nY\nN\nN\nN\nN\nN\n1\n128\n64\n200\n3\n"
               "3000\n1C\n1C\n0\n20\n-1\nN\n3.3V\n")
    code, out, err = run_tool("flash", "define", stdin=answers)
    assert code == 0, err
    broken = out.strip()
    verdict = pgmdev.flash_check(broken)
    assert not verdict["loads"]
    assert verdict["reason"] == "rule refused: protection_division is at most 31, or 255"
    assert verdict == tool_json("flash", "check", broken, refused=True)
    unsealed = pgmdev.flash_encode(pgmdev.flash_decode(broken).split("#")[0])
    assert pgmdev.flash_check(unsealed)["refused_at"] == "seal"
    # A value set for the flash manager and refused is a warning with the same reason.
    monkeypatch.setenv("PGM_3RD_PARTY_FLASH_INI", unsealed)
    with pytest.warns(RuntimeWarning, match="PGM_3RD_PARTY_FLASH_INI is not loaded: the text has "
                                            "no '#PASSWORD;' seal"):
        with pgmdev.FlashManager():
            pass
    with pytest.raises(ValueError, match="does not decode"):
        pgmdev.flash_decode("not a value")


def test_sfdp_errors_carry_the_tools_sentence(tmp_path):
    junk = tmp_path / "junk.bin"
    junk.write_bytes(b"SFDP" + bytes(3))
    path = os.path.join(SFDP_DIR, DUMPS[0])
    for args, call in (((str(junk), "--id", "EF4018"), lambda: pgmdev.sfdp_derive(str(junk), "EF4018")),
                       ((path, "--id", "EF40"), lambda: pgmdev.sfdp_derive(path, "EF40"))):
        with pytest.raises(ValueError) as raised:
            call()
        assert str(raised.value) == tool_error("flash", "sfdp", *args)
    with pytest.raises(ValueError, match="die_count must be 1 or 2"):
        pgmdev.sfdp_derive(path, dump_id(DUMPS[0]), dies=258)  # not taken as its low byte


NAND = {"manufacturer_id": "2C", "device_id": "DA", "flash_byte_size": 256}


def test_hps_definitions_added_and_removed_as_the_tool_sees_them(user_folder):
    for kind in ("spi", "nand"):
        assert pgmdev.hps_list(kind) == tool_json("hps", "list", kind)
    micron = pgmdev.hps_list("spi", manufacturer="micron", size=64)
    assert micron and micron == tool_json("hps", "list", "spi", "--manufacturer", "micron",
                                          "--size", "64")
    assert [key for key, _ in pgmdev.hps_fields("NAND")] == list(NAND)
    pgmdev.hps_add("nand", NAND)
    listed = tool_json("hps", "list", "nand")
    assert pgmdev.hps_list("nand") == listed
    assert listed[0]["source"] == "user" and listed[0]["manufacturer_id"] == 0x2C
    assert listed[0]["flash_byte_size"] == 256 << 20
    code, _, err = run_tool("hps", "add", "nand", stdin="2C\nDA\n256\n")
    assert code == 0, err
    assert pgmdev.hps_remove("nand", 1) == 1
    assert pgmdev.hps_list("nand") == tool_json("hps", "list", "nand")
    with pytest.raises(ValueError) as raised:
        pgmdev.hps_remove("nand", 2)
    assert str(raised.value) == tool_error("hps", "remove", "nand", "2")


def test_refused_hps_answers_say_why(user_folder):
    with pytest.raises(ValueError, match="manufacturer_id"):
        pgmdev.hps_add("nand", dict(NAND, manufacturer_id="00"))
    with pytest.raises(ValueError, match="no answer for device_id"):
        pgmdev.hps_add("nand", {"manufacturer_id": "2C"})
    with pytest.raises(ValueError, match="spi or nand"):
        pgmdev.hps_list("usb")
    assert not (user_folder / "pgm_flash.ini").exists()


def test_hps_answers_are_values_of_their_type(user_folder):
    # An int is the value itself, in the prompt's unit: 0x20 is not the text "32".
    pgmdev.hps_add("nand", {"manufacturer_id": 0x20, "device_id": 0x10, "flash_byte_size": 256})
    first = pgmdev.hps_list("nand")[0]
    assert (first["manufacturer_id"], first["device_id"]) == (0x20, 0x10)
    assert first["flash_byte_size"] == 256 << 20
    for key, value in (("device_id", 1.5), ("device_id", None), ("device_id", True),
                       ("flash_byte_size", [256])):
        with pytest.raises(TypeError, match=key):
            pgmdev.hps_add("nand", dict(NAND, **{key: value}))
    with pytest.raises(ValueError, match="device_id"):
        pgmdev.hps_add("nand", dict(NAND, device_id=-1))
    # Removing the last definition leaves a file the next edit takes without force.
    assert pgmdev.hps_remove("nand", 1) == 0
    pgmdev.hps_add("nand", NAND)
    assert pgmdev.hps_list("nand")[0]["device_id"] == 0xDA


def test_generators_write_what_the_tool_writes(tmp_path):
    data = os.path.join(SOURCE_DIR, "data")
    pgmdev.generate_flash(os.path.join(data, "pgm_flash.csv"), str(tmp_path / "a" / "flash.pcf"))
    code, _, err = run_tool("generate", "flash", os.path.join(data, "pgm_flash.csv"),
                            str(tmp_path / "b.pcf"))
    assert code == 0, err
    assert filecmp.cmp(tmp_path / "a" / "flash.pcf", tmp_path / "b.pcf", shallow=False)
    shipped = os.path.join(pgmdev.paths()["device_db"], "programmer", "pgm_dev_info.pcf")
    pgmdev.generate_device_info(os.path.join(data, "pgm_dev_info.csv"), str(tmp_path / "d.pcf"))
    assert filecmp.cmp(tmp_path / "d.pcf", shipped, shallow=False)
    with pytest.raises(FileNotFoundError) as raised:
        pgmdev.generate_flash(str(tmp_path / "none.csv"), str(tmp_path / "x.pcf"))
    assert str(raised.value) == tool_error("generate", "flash", str(tmp_path / "none.csv"),
                                           str(tmp_path / "x.pcf"))


def test_a_corrupt_database_raises_internal_error(tmp_path, monkeypatch):
    (tmp_path / "programmer").mkdir()
    (tmp_path / "programmer" / "pgm_dev_info.pcf").write_bytes(b"\x00" * 64)
    monkeypatch.setenv("PGMDEV_DEVICE_DB_DIR", str(tmp_path))
    with pytest.raises(pgmdev.InternalError) as raised:
        pgmdev.device(part="ZQ160M8C6")
    error = raised.value
    assert error.condition and error.module and error.line > 0
    code, _, err = run_tool("device", "--part", "ZQ160M8C6")
    assert code == 4 and f"pgmdev: warning: {error}\n" in err
    # Another file in its place is said by its magic, not by the long condition.
    assert str(tmp_path) in str(error) and "is not a device information file (magic" in str(error)


def test_a_broken_table_is_a_value_error_as_the_tool_reports_it(tmp_path):
    # Bad input (exit 1 for the tool), not a broken invariant: ValueError, the same sentence.
    source = os.path.join(SOURCE_DIR, "data", "pgm_dev_info.csv")
    cut = tmp_path / "cut.csv"
    with open(source, encoding="utf-8") as lines:
        cut.write_text("".join(line[:100].rstrip("\n") + "\n" for line in lines))
    with pytest.raises(ValueError) as raised:
        pgmdev.generate_device_info(str(cut), str(tmp_path / "out.pcf"))
    assert not (tmp_path / "out.pcf").exists()
    code, _, err = run_tool("generate", "device-info", str(cut), str(tmp_path / "out.pcf"))
    assert code == 1 and f"pgmdev: {raised.value}\n" in err and str(cut) in str(raised.value)
    flash = tmp_path / "flash.csv"
    rows = open(os.path.join(SOURCE_DIR, "data", "pgm_flash.csv"), encoding="utf-8").readlines()
    cells = rows[12].split(",")
    rows[12] = ",".join(cells[:3] + ["ZZ"] + cells[4:])
    flash.write_text("".join(rows))
    with pytest.raises(ValueError, match="has a bad value at row"):
        pgmdev.generate_flash(str(flash), str(tmp_path / "f.pcf"))
    # A parts list line short of a part's 7 cells: its row and cells, not a subscript error.
    (tmp_path / "inst" / "h").mkdir(parents=True)
    parts = open(os.path.join(SOURCE_DIR, "data", "pgm_parts.txt"), encoding="utf-8").readlines()
    (tmp_path / "inst" / "h" / "pgm_parts.txt").write_text("".join(parts[:3]) + "ZQ160 ZQ160 M8\n")
    with pytest.raises(ValueError, match="has a line of 3 cells at row 4, fewer than the 7"):
        pgmdev.generate_device_info(source, str(tmp_path / "d.pcf"), str(tmp_path / "inst"))


def test_library_warnings_are_runtime_warnings(monkeypatch, user_folder):
    monkeypatch.setenv("PGM_3RD_PARTY_FLASH_INI", "NOTAVALUE")
    with pytest.warns(RuntimeWarning, match="PGM_3RD_PARTY_FLASH_INI is not loaded"):
        with pgmdev.FlashManager() as flash:
            assert flash.records
    (user_folder / "pgm_flash.ini").write_bytes(b"PGMDEV_FLASH_INI" + bytes(3))
    with pytest.warns(RuntimeWarning, match="is not a valid flash INI data file"):
        pgmdev.hps_list("nand")


def test_seal_refuses_definitions_that_would_not_load():
    derived = pgmdev.sfdp_derive(os.path.join(SFDP_DIR, DUMPS[0]), dump_id(DUMPS[0]))
    for change, reason in (({"memory_id": "x"}, "memory_id"),
                           ({"sec_erase_time": 61}, "rule refused: sec_erase_time is 1 to 60"),
                           ({"program_utime": 999}, "program_utime")):
        with pytest.raises(ValueError, match="the definition would not load: .*" + reason):
            pgmdev.flash_seal(dict(derived["definition"], **change))
