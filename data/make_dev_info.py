#!/usr/bin/env python3
"""Writes data/pgm_dev_info.csv and data/pgm_parts.txt from the device catalogue.

Deterministic (no randomness, rows in catalogue order), Python 3 standard library only.
Run `python3 data/make_dev_info.py` after changing the catalogue or the rules below, and
check in both outputs with it. An optional argument names another output folder.

pgm_dev_info.csv: the type row, the name row and exactly 78 data rows: 65 family rows
(the generic family second, so that record 1, where families without a row point, is the
generic record), 10 device-file (pcf) rows, the generic device and the generic part. Six
families are left out on purpose (MISSING_FAMILIES): their devices fall back to a pcf row
where one matches their die, else to the generic record, and generation sends one notice
for each of them.

pgm_parts.txt: one line per part of the catalogue (generic part included):
part device package speed temperature released pcf preferred hidden family
where pcf is "<die pcf>:<family pcf>" and "-" stands for an empty cell.
"""

import csv
import os
import sys

HERE = os.path.dirname(os.path.abspath(__file__))
OUT = sys.argv[1] if len(sys.argv) > 1 else HERE
CATALOG = os.path.join(HERE, "catalog")

# Families with no row of their own.
MISSING_FAMILIES = ["ZORQA_II_LP", "KALIX_III_SX", "VERANT_IV_SX", "NOLTA_III_E",
                    "TAMRIS_IV_LP", "GALMO_I_E"]
# Device-file names with a row: six dies of the missing families, four of others. One is
# written in upper case, since pcf names match ignoring case.
PCF_ROWS = ["zqb1:zq_family", "kxd2:kx_family", "vre1:vr_family", "nld1:nl_family",
            "tme1:tm_family", "gla1:gl_family", "zq1:zq_family", "HX2:HX_FAMILY",
            "pd1:pd_family", "cf1:cf_family"]
# Families whose key-programming algorithm the other families of their line share.
KEY_ALGORITHM_FAMILY = {"ZORQA": "ZORQA_V", "KALIX": "KALIX_V", "VERANT": "VERANT_III",
                        "TAMRIS": "TAMRIS_V", "HEXOR": "HEXOR_I", "PADRO": "PADRO_III",
                        "RUBEL": "RUBEL_III"}
ROMAN = {"I": 1, "II": 2, "III": 3, "IV": 4, "V": 5, "VI": 6, "VII": 7, "VIII": 8}

COLUMNS = [
    ("family", "DEVID_ENUM"), ("pcf", "DEVID_STR"), ("device", "DEVID_ENUM"),
    ("part", "DEVID_ENUM"), ("skip_pof_bitstream_conversion", "bool"),
    ("no_flash_option_for_unvm", "bool"), ("ini_fbgen_flow", "bool"),
    ("support_legacy_f2p", "bool"), ("support_cpf", "bool"), ("support_ba_flow", "bool"),
    ("support_ob", "bool"), ("support_download_mode", "bool"), ("support_sld", "bool"),
    ("support_asc", "bool"), ("support_asc_ini", "STL_STRING"),
    ("support_remote_local_update", "bool"), ("need_quillon_padding_mask", "bool"),
    ("support_aes_wo_ini", "bool"), ("unsupported_by_tandor2", "bool"),
    ("unsupported_by_quillon", "bool"), ("allow_partial_frame", "bool"),
    ("jtag_program_initialize_in_rti", "bool"), ("issue_apf_disengage", "bool"),
    ("jtag_program_initialize_microsec", "DWORD"), ("jtag_configuration_prepad_bits", "DWORD"),
    ("jtag_program_startup_tck", "DWORD"), ("aes_n_fuse_bits", "DWORD"),
    ("aes_fuse_bit_location", "DWORD"), ("aes_n_nv_key_bits", "DWORD"),
    ("aes_n_v_key_bits", "DWORD"), ("aes_n_verify_bits", "DWORD"), ("n_iv_bits", "DWORD"),
    ("ekp_alg_family", "ENUM"), ("ps_cmp_dclk_ratio", "BYTE"), ("fpp_cmp_dclk_ratio", "BYTE"),
    ("fppx16_cmp_dclk_ratio", "BYTE"), ("fppx32_cmp_dclk_ratio", "BYTE"),
    ("cmp_fbgen_start_block", "ENUM"), ("cmp_fbgen_end_block", "ENUM"),
    ("cmp_end_padding_alignement", "DWORD"), ("cmp_end_pad_with_one", "bool"),
    ("support_prpof", "bool"), ("need_factory_instr", "bool"), ("need_config_io_instr", "bool"),
    ("n_tck_ticks_after_config_io", "DWORD"), ("advanced_family", "bool"),
    ("as_cb_hold_time_issue", "bool"), ("as_cb_4byte_addressing", "bool"),
    ("as_read_in_two_steps", "bool"), ("as_second_offset_addr", "DWORD"),
    ("asx1_second_offset_extra_bytes", "DWORD"), ("asx4_second_offset_extra_bytes", "DWORD"),
    ("asc_dummy_cycle", "BYTE"), ("spi_dummy_clk_x1_128mb", "BYTE"),
    ("spi_dummy_clk_x1_256mb", "BYTE"), ("spi_dummy_clk_x4_128mb", "BYTE"),
    ("spi_dummy_clk_x4_256mb", "BYTE"), ("supported_max_cascaded_asc_count", "DWORD"),
    ("as_minimum_flash_density", "DWORD"), ("skip_fbgen", "bool"), ("cfg_dev", "STL_STRING"),
    ("cvp_post_iocsr_padding_cbws", "DWORD"), ("hps_post_iocsr_padding_cbws", "DWORD"),
    ("cvp_pre_core_padding_cbws", "DWORD"), ("cvp_pre_cmp_core_padding_cbws", "DWORD"),
    ("cvp_pre_enc_core_padding_cbws", "DWORD"), ("fbgen_cvp_core_start_block", "ENUM"),
    ("fbgen_hps_core_start_block", "ENUM"), ("support_ru_cvp", "bool"),
    ("support_ru_hps", "bool"), ("support_fi", "bool"), ("fi_program_twice", "bool"),
    ("use_sdm", "bool"), ("flash_width_bits", "DWORD"), ("default_prog_mode", "ENUM"),
    ("cmf_flash_block_size", "DWORD"), ("asc_voltage", "STL_STRING"),
    ("support_sdmmc", "bool"), ("support_vab", "bool"), ("support_sdos", "bool"),
    ("use_subidcode", "bool"), ("dummy_string", "STL_STRING"), ("dummy_byte", "BYTE"),
    ("dummy_word", "WORD"), ("dummy_dword", "DWORD"), ("dummy_bool", "bool"),
]
assert len(COLUMNS) == 86


def read_table(name):
    with open(os.path.join(CATALOG, name), newline="") as f:
        return list(csv.DictReader(f))


def flag(value):
    return "TRUE" if value else ""


class TRAITS:
    """What a family's programming properties follow from: its kind, generation, subtype."""

    def __init__(self, family):
        self.name = family["family_name"]
        self.line = family["line"]
        self.kind = family["kind"]
        words = self.name.split("_")
        self.generation = ROMAN.get(words[1], 1) if len(words) > 1 else 1
        self.subtype = words[2] if len(words) > 2 else ""

    @property
    def fpga(self):
        return self.kind in ("FPGA", "SOC")


def properties(t, salt):
    """The 82 values after the identifiers, as CSV cells, for a family of traits `t`."""
    g, fpga, cpld, soc = t.generation, t.fpga, t.kind == "CPLD", t.kind == "SOC"
    config = t.kind == "CONFIG"
    aes = fpga and g >= 3
    sdm = fpga and g >= 6
    cvp = t.subtype in ("GX", "GT")
    key_family = KEY_ALGORITHM_FAMILY.get(t.line)
    v = {}
    v["skip_pof_bitstream_conversion"] = flag(cpld)
    v["no_flash_option_for_unvm"] = flag(cpld and g >= 3)
    v["ini_fbgen_flow"] = flag(fpga and g >= 4)
    v["support_legacy_f2p"] = flag(g <= 2 and not config)
    v["support_cpf"] = flag(fpga)
    v["support_ba_flow"] = flag(fpga and g >= 6)
    v["support_ob"] = flag(fpga and g >= 3)
    v["support_download_mode"] = flag(cpld or config)
    v["support_sld"] = flag(not config)
    v["support_asc"] = flag(fpga)
    v["support_asc_ini"] = ("asx4" if g >= 3 else "asx1") if fpga else ""
    v["support_remote_local_update"] = flag(fpga and g >= 2)
    v["need_quillon_padding_mask"] = flag(fpga and g >= 7)
    v["support_aes_wo_ini"] = flag(aes and g >= 5)
    v["unsupported_by_tandor2"] = flag(sdm)
    v["unsupported_by_quillon"] = flag(g <= 1 and not config)
    v["allow_partial_frame"] = flag(cvp)
    v["jtag_program_initialize_in_rti"] = flag(cpld)
    v["issue_apf_disengage"] = flag(soc)
    v["jtag_program_initialize_microsec"] = str(500 if cpld else 1000 if config else 200 * g)
    v["jtag_configuration_prepad_bits"] = "128" if fpga and g >= 4 else "0"
    v["jtag_program_startup_tck"] = "4096" if sdm else "1024" if g >= 3 else "256"
    v["aes_n_fuse_bits"] = ("256" if g >= 5 else "128") if aes else "0"
    v["aes_fuse_bit_location"] = "0x%X" % (0x1A0 + 0x20 * g) if aes else "0"
    v["aes_n_nv_key_bits"] = ("256" if g >= 5 else "128") if aes else "0"
    v["aes_n_v_key_bits"] = "256" if aes else "0"
    v["aes_n_verify_bits"] = ("64" if g >= 5 else "32") if aes else "0"
    v["n_iv_bits"] = "128" if aes else "0"
    v["ekp_alg_family"] = "DEV_FAMILY_" + key_family if aes and key_family else ""
    v["ps_cmp_dclk_ratio"] = ("2" if g >= 3 else "1") if fpga else "0"
    v["fpp_cmp_dclk_ratio"] = ("4" if g >= 3 else "2") if fpga else "0"
    v["fppx16_cmp_dclk_ratio"] = "8" if fpga and g >= 4 else "0"
    v["fppx32_cmp_dclk_ratio"] = "16" if fpga and g >= 6 else "0"
    v["cmp_fbgen_start_block"] = (("NPCF_BLOCK_CB_HEADER2" if g >= 4 else "NPCF_BLOCK_CRAM")
                                  if fpga else "NPCF_BLOCK_ERAM" if cpld else "")
    v["cmp_fbgen_end_block"] = "NPCF_BLOCK_POSTAMBLE" if fpga else ""
    v["cmp_end_padding_alignement"] = ("128" if g >= 5 else "32") if fpga else "0"
    v["cmp_end_pad_with_one"] = flag(fpga and g >= 5)
    v["support_prpof"] = flag(fpga and g >= 4)
    v["need_factory_instr"] = flag(cpld)
    v["need_config_io_instr"] = flag(fpga and g >= 3)
    v["n_tck_ticks_after_config_io"] = str(100 * g) if fpga and g >= 3 else "0"
    v["advanced_family"] = flag(fpga and g >= 5)
    v["as_cb_hold_time_issue"] = flag(fpga and g == 2)
    v["as_cb_4byte_addressing"] = flag(fpga and g >= 4)
    v["as_read_in_two_steps"] = flag(fpga and g >= 6)
    v["as_second_offset_addr"] = "0x01000000" if fpga and g >= 4 else "0"
    v["asx1_second_offset_extra_bytes"] = "1" if fpga and g >= 4 else "0"
    v["asx4_second_offset_extra_bytes"] = "4" if fpga and g >= 4 else "0"
    v["asc_dummy_cycle"] = ("10" if g >= 5 else "8") if fpga else "0"
    v["spi_dummy_clk_x1_128mb"] = "8" if fpga else "0"
    v["spi_dummy_clk_x1_256mb"] = "8" if fpga else "0"
    v["spi_dummy_clk_x4_128mb"] = ("10" if g >= 5 else "6") if fpga else "0"
    v["spi_dummy_clk_x4_256mb"] = "10" if fpga else "0"
    v["supported_max_cascaded_asc_count"] = ("4" if g >= 4 else "1") if fpga else "0"
    v["as_minimum_flash_density"] = (("0x02000000" if g >= 6 else "0x00800000" if g >= 4
                                      else "0x00200000") if fpga else "0")
    v["skip_fbgen"] = flag(config)
    v["cfg_dev"] = ("QSPI_128" if g >= 4 else "SPI_16") if fpga else ""
    v["cvp_post_iocsr_padding_cbws"] = str(1024 * g) if cvp else "0"
    v["hps_post_iocsr_padding_cbws"] = "2048" if soc else "0"
    v["cvp_pre_core_padding_cbws"] = "512" if cvp else "0"
    v["cvp_pre_cmp_core_padding_cbws"] = "640" if cvp else "0"
    v["cvp_pre_enc_core_padding_cbws"] = "768" if cvp else "0"
    v["fbgen_cvp_core_start_block"] = "NPCF_BLOCK_CRAM" if cvp else ""
    v["fbgen_hps_core_start_block"] = "NPCF_BLOCK_CRAM" if soc else ""
    v["support_ru_cvp"] = flag(cvp and g >= 3)
    v["support_ru_hps"] = flag(soc)
    v["support_fi"] = flag(fpga and g >= 6)
    v["fi_program_twice"] = flag(fpga and g >= 7)
    v["use_sdm"] = flag(sdm)
    v["flash_width_bits"] = "32" if cpld else "0"
    v["default_prog_mode"] = "PGMIO_AVST_X8" if sdm else ""
    v["cmf_flash_block_size"] = "0x10000" if sdm else "0x2000" if cpld else "0"
    v["asc_voltage"] = "1.8V" if fpga and g >= 4 else "3.3V"
    v["support_sdmmc"] = flag(soc and g >= 3)
    v["support_vab"] = flag(fpga and g >= 7)
    v["support_sdos"] = flag((soc and g >= 5) or (fpga and g >= 8))
    v["use_subidcode"] = flag(t.subtype == "LP")
    # Meaningless columns, one of each type, with values that exercise the encodings.
    v["dummy_string"] = "dummy_%d" % salt if salt % 3 else ""
    v["dummy_byte"] = "0x%02X" % (salt * 37 % 256)
    v["dummy_word"] = str(salt * 1013 % 65536)
    v["dummy_dword"] = "4294967295" if salt == 0 else "0x%08X" % (salt * 2654435761 % 2**32)
    v["dummy_bool"] = ["", "FALSE", "TRUE"][salt % 3]
    return v


def row(ids, values):
    cells = [ids.get(name, "") for name, _ in COLUMNS[:4]]
    cells += [values[name] for name, _ in COLUMNS[4:]]
    return ",".join(cells)


def generic_traits():
    t = TRAITS({"family_name": "GENERIC", "line": "GENERIC", "kind": "FPGA"})
    t.generation = 1
    return t


def dev_info_rows(families, devices):
    by_name = {f["family_name"]: f for f in families}
    present = [f for f in families[:-1] if f["family_name"] not in MISSING_FAMILIES]
    assert len(present) == 65
    rows = [row({"family": present[0]["family_name"]}, properties(TRAITS(present[0]), 0))]
    rows.append(row({"family": "GENERIC"}, properties(generic_traits(), 1)))
    for f in present[1:]:
        rows.append(row({"family": f["family_name"]},
                        properties(TRAITS(f), len(rows))))
    die_family = {d["die_pcf"]: d["family_enum"] for d in devices}
    for pcf in PCF_ROWS:
        family = families[int(die_family[pcf.split(":")[0].lower()]) - 1]
        values = properties(TRAITS(by_name[family["family_name"]]), len(rows))
        # A die of its own: slower to initialise than its family.
        values["jtag_program_initialize_microsec"] = str(
            2 * int(values["jtag_program_initialize_microsec"]))
        rows.append(row({"pcf": pcf}, values))
    rows.append(row({"device": "GENERIC"}, properties(generic_traits(), len(rows))))
    rows.append(row({"part": "GENERIC"}, properties(generic_traits(), len(rows))))
    assert len(rows) == 78
    return rows


def write_dev_info(families, devices):
    lines = [",".join(t for _, t in COLUMNS), ",".join(n for n, _ in COLUMNS)]
    lines += dev_info_rows(families, devices)
    with open(os.path.join(OUT, "pgm_dev_info.csv"), "w", newline="\n") as f:
        f.write("\n".join(lines) + "\n")


def write_parts(families, devices, parts):
    def cell(text):
        return text if text else "-"

    lines = ["// part device package speed temperature released pcf preferred hidden family"]
    for p in parts:
        device = devices[int(p["device_enum"]) - 1]
        family = families[int(device["family_enum"]) - 1]
        pcf = device["die_pcf"] + ":" + family["family_pcf"]
        lines.append(" ".join([p["part_name"], device["device_name"], cell(p["package"]),
                               cell(p["speed"]), cell(p["temperature"]), p["released"], pcf,
                               p["preferred"], p["hidden"], device["family_enum"]]))
    with open(os.path.join(OUT, "pgm_parts.txt"), "w", newline="\n") as f:
        f.write("\n".join(lines) + "\n")


def main():
    families = read_table("families.csv")
    devices = read_table("devices.csv")
    parts = read_table("parts.csv")
    write_dev_info(families, devices)
    write_parts(families, devices, parts)


if __name__ == "__main__":
    main()
