// Device information record, its column table and the enumeration name tables of its source table.
#pragma once

// One record per row of data/pgm_dev_info.csv: the 86 typed values of a family, a device-file
// (pcf) name, a device or a part, in column order (doc/database_file.md gives their encoding).

#include <string>

#include "pgm_dev_catalog.h"
#include "pgm_types.h"
#include "pgmdev_manager_type.h"

constexpr DWORD TOTAL_DEVICE_DATABASE_MEMBER = 86;  // columns of the source table
constexpr DWORD TOTAL_DATABASE_DEVICE = 78;         // data rows of the source table

// A default record has every number 0, every flag false and every string empty.
struct PGMDEV_API PGMDEV_DEVICE_INFO {
  DEV_FAMILY_ENUM family = DEV_FAMILY_INVALID;
  std::string pcf;
  DEV_DEVICE_ENUM device = DEV_DEVICE_INVALID;
  int part = 0;
  bool skip_pof_bitstream_conversion = false;
  bool no_flash_option_for_unvm = false;
  bool ini_fbgen_flow = false;
  bool support_legacy_f2p = false;
  bool support_cpf = false;
  bool support_ba_flow = false;
  bool support_ob = false;
  bool support_download_mode = false;
  bool support_sld = false;
  bool support_asc = false;
  std::string support_asc_ini;
  bool support_remote_local_update = false;
  bool need_quillon_padding_mask = false;
  bool support_aes_wo_ini = false;
  bool unsupported_by_tandor2 = false;
  bool unsupported_by_quillon = false;
  bool allow_partial_frame = false;
  bool jtag_program_initialize_in_rti = false;
  bool issue_apf_disengage = false;
  DWORD jtag_program_initialize_microsec = 0;
  DWORD jtag_configuration_prepad_bits = 0;
  DWORD jtag_program_startup_tck = 0;
  DWORD aes_n_fuse_bits = 0;
  DWORD aes_fuse_bit_location = 0;
  DWORD aes_n_nv_key_bits = 0;
  DWORD aes_n_v_key_bits = 0;
  DWORD aes_n_verify_bits = 0;
  DWORD n_iv_bits = 0;
  DWORD ekp_alg_family = 0;
  BYTE ps_cmp_dclk_ratio = 0;
  BYTE fpp_cmp_dclk_ratio = 0;
  BYTE fppx16_cmp_dclk_ratio = 0;
  BYTE fppx32_cmp_dclk_ratio = 0;
  DWORD cmp_fbgen_start_block = 0;
  DWORD cmp_fbgen_end_block = 0;
  DWORD cmp_end_padding_alignement = 0;
  bool cmp_end_pad_with_one = false;
  bool support_prpof = false;
  bool need_factory_instr = false;
  bool need_config_io_instr = false;
  DWORD n_tck_ticks_after_config_io = 0;
  bool advanced_family = false;
  bool as_cb_hold_time_issue = false;
  bool as_cb_4byte_addressing = false;
  bool as_read_in_two_steps = false;
  DWORD as_second_offset_addr = 0;
  DWORD asx1_second_offset_extra_bytes = 0;
  DWORD asx4_second_offset_extra_bytes = 0;
  BYTE asc_dummy_cycle = 0;
  BYTE spi_dummy_clk_x1_128mb = 0;
  BYTE spi_dummy_clk_x1_256mb = 0;
  BYTE spi_dummy_clk_x4_128mb = 0;
  BYTE spi_dummy_clk_x4_256mb = 0;
  DWORD supported_max_cascaded_asc_count = 0;
  DWORD as_minimum_flash_density = 0;
  bool skip_fbgen = false;
  std::string cfg_dev;
  DWORD cvp_post_iocsr_padding_cbws = 0;
  DWORD hps_post_iocsr_padding_cbws = 0;
  DWORD cvp_pre_core_padding_cbws = 0;
  DWORD cvp_pre_cmp_core_padding_cbws = 0;
  DWORD cvp_pre_enc_core_padding_cbws = 0;
  DWORD fbgen_cvp_core_start_block = 0;
  DWORD fbgen_hps_core_start_block = 0;
  bool support_ru_cvp = false;
  bool support_ru_hps = false;
  bool support_fi = false;
  bool fi_program_twice = false;
  bool use_sdm = false;
  DWORD flash_width_bits = 0;
  DWORD default_prog_mode = 0;
  DWORD cmf_flash_block_size = 0;
  std::string asc_voltage;
  bool support_sdmmc = false;
  bool support_vab = false;
  bool support_sdos = false;
  bool use_subidcode = false;
  std::string dummy_string;
  BYTE dummy_byte = 0;
  WORD dummy_word = 0;
  DWORD dummy_dword = 0;
  bool dummy_bool = false;
};

// One column of the source table: its lower-case name, the type word of the table's type row,
// the type code its values carry in the file and, for the three identifier columns, the name
// table that resolves its cells ("family", "device", "part"; "" for the other enumerations).
struct PGMDEV_API PGMDEV_DEVICE_INFO_COLUMN {
  const char* name;
  const char* type_word;
  PGMDEV_MANAGER_TYPE type;
  const char* type_name;
};

inline constexpr PGMDEV_DEVICE_INFO_COLUMN
    PGMDEV_DEVICE_INFO_COLUMNS[TOTAL_DEVICE_DATABASE_MEMBER] = {
        {"family", "DEVID_ENUM", PGMDEV_MANAGER_ENUM, "family"},
        {"pcf", "DEVID_STR", PGMDEV_MANAGER_DEVID_STR, ""},
        {"device", "DEVID_ENUM", PGMDEV_MANAGER_ENUM, "device"},
        {"part", "DEVID_ENUM", PGMDEV_MANAGER_ENUM, "part"},
        {"skip_pof_bitstream_conversion", "bool", PGMDEV_MANAGER_BOOL, ""},
        {"no_flash_option_for_unvm", "bool", PGMDEV_MANAGER_BOOL, ""},
        {"ini_fbgen_flow", "bool", PGMDEV_MANAGER_BOOL, ""},
        {"support_legacy_f2p", "bool", PGMDEV_MANAGER_BOOL, ""},
        {"support_cpf", "bool", PGMDEV_MANAGER_BOOL, ""},
        {"support_ba_flow", "bool", PGMDEV_MANAGER_BOOL, ""},
        {"support_ob", "bool", PGMDEV_MANAGER_BOOL, ""},
        {"support_download_mode", "bool", PGMDEV_MANAGER_BOOL, ""},
        {"support_sld", "bool", PGMDEV_MANAGER_BOOL, ""},
        {"support_asc", "bool", PGMDEV_MANAGER_BOOL, ""},
        {"support_asc_ini", "STL_STRING", PGMDEV_MANAGER_STRING, ""},
        {"support_remote_local_update", "bool", PGMDEV_MANAGER_BOOL, ""},
        {"need_quillon_padding_mask", "bool", PGMDEV_MANAGER_BOOL, ""},
        {"support_aes_wo_ini", "bool", PGMDEV_MANAGER_BOOL, ""},
        {"unsupported_by_tandor2", "bool", PGMDEV_MANAGER_BOOL, ""},
        {"unsupported_by_quillon", "bool", PGMDEV_MANAGER_BOOL, ""},
        {"allow_partial_frame", "bool", PGMDEV_MANAGER_BOOL, ""},
        {"jtag_program_initialize_in_rti", "bool", PGMDEV_MANAGER_BOOL, ""},
        {"issue_apf_disengage", "bool", PGMDEV_MANAGER_BOOL, ""},
        {"jtag_program_initialize_microsec", "DWORD", PGMDEV_MANAGER_DWORD, ""},
        {"jtag_configuration_prepad_bits", "DWORD", PGMDEV_MANAGER_DWORD, ""},
        {"jtag_program_startup_tck", "DWORD", PGMDEV_MANAGER_DWORD, ""},
        {"aes_n_fuse_bits", "DWORD", PGMDEV_MANAGER_DWORD, ""},
        {"aes_fuse_bit_location", "DWORD", PGMDEV_MANAGER_DWORD, ""},
        {"aes_n_nv_key_bits", "DWORD", PGMDEV_MANAGER_DWORD, ""},
        {"aes_n_v_key_bits", "DWORD", PGMDEV_MANAGER_DWORD, ""},
        {"aes_n_verify_bits", "DWORD", PGMDEV_MANAGER_DWORD, ""},
        {"n_iv_bits", "DWORD", PGMDEV_MANAGER_DWORD, ""},
        {"ekp_alg_family", "ENUM", PGMDEV_MANAGER_ENUM, ""},
        {"ps_cmp_dclk_ratio", "BYTE", PGMDEV_MANAGER_BYTE, ""},
        {"fpp_cmp_dclk_ratio", "BYTE", PGMDEV_MANAGER_BYTE, ""},
        {"fppx16_cmp_dclk_ratio", "BYTE", PGMDEV_MANAGER_BYTE, ""},
        {"fppx32_cmp_dclk_ratio", "BYTE", PGMDEV_MANAGER_BYTE, ""},
        {"cmp_fbgen_start_block", "ENUM", PGMDEV_MANAGER_ENUM, ""},
        {"cmp_fbgen_end_block", "ENUM", PGMDEV_MANAGER_ENUM, ""},
        {"cmp_end_padding_alignement", "DWORD", PGMDEV_MANAGER_DWORD, ""},
        {"cmp_end_pad_with_one", "bool", PGMDEV_MANAGER_BOOL, ""},
        {"support_prpof", "bool", PGMDEV_MANAGER_BOOL, ""},
        {"need_factory_instr", "bool", PGMDEV_MANAGER_BOOL, ""},
        {"need_config_io_instr", "bool", PGMDEV_MANAGER_BOOL, ""},
        {"n_tck_ticks_after_config_io", "DWORD", PGMDEV_MANAGER_DWORD, ""},
        {"advanced_family", "bool", PGMDEV_MANAGER_BOOL, ""},
        {"as_cb_hold_time_issue", "bool", PGMDEV_MANAGER_BOOL, ""},
        {"as_cb_4byte_addressing", "bool", PGMDEV_MANAGER_BOOL, ""},
        {"as_read_in_two_steps", "bool", PGMDEV_MANAGER_BOOL, ""},
        {"as_second_offset_addr", "DWORD", PGMDEV_MANAGER_DWORD, ""},
        {"asx1_second_offset_extra_bytes", "DWORD", PGMDEV_MANAGER_DWORD, ""},
        {"asx4_second_offset_extra_bytes", "DWORD", PGMDEV_MANAGER_DWORD, ""},
        {"asc_dummy_cycle", "BYTE", PGMDEV_MANAGER_BYTE, ""},
        {"spi_dummy_clk_x1_128mb", "BYTE", PGMDEV_MANAGER_BYTE, ""},
        {"spi_dummy_clk_x1_256mb", "BYTE", PGMDEV_MANAGER_BYTE, ""},
        {"spi_dummy_clk_x4_128mb", "BYTE", PGMDEV_MANAGER_BYTE, ""},
        {"spi_dummy_clk_x4_256mb", "BYTE", PGMDEV_MANAGER_BYTE, ""},
        {"supported_max_cascaded_asc_count", "DWORD", PGMDEV_MANAGER_DWORD, ""},
        {"as_minimum_flash_density", "DWORD", PGMDEV_MANAGER_DWORD, ""},
        {"skip_fbgen", "bool", PGMDEV_MANAGER_BOOL, ""},
        {"cfg_dev", "STL_STRING", PGMDEV_MANAGER_STRING, ""},
        {"cvp_post_iocsr_padding_cbws", "DWORD", PGMDEV_MANAGER_DWORD, ""},
        {"hps_post_iocsr_padding_cbws", "DWORD", PGMDEV_MANAGER_DWORD, ""},
        {"cvp_pre_core_padding_cbws", "DWORD", PGMDEV_MANAGER_DWORD, ""},
        {"cvp_pre_cmp_core_padding_cbws", "DWORD", PGMDEV_MANAGER_DWORD, ""},
        {"cvp_pre_enc_core_padding_cbws", "DWORD", PGMDEV_MANAGER_DWORD, ""},
        {"fbgen_cvp_core_start_block", "ENUM", PGMDEV_MANAGER_ENUM, ""},
        {"fbgen_hps_core_start_block", "ENUM", PGMDEV_MANAGER_ENUM, ""},
        {"support_ru_cvp", "bool", PGMDEV_MANAGER_BOOL, ""},
        {"support_ru_hps", "bool", PGMDEV_MANAGER_BOOL, ""},
        {"support_fi", "bool", PGMDEV_MANAGER_BOOL, ""},
        {"fi_program_twice", "bool", PGMDEV_MANAGER_BOOL, ""},
        {"use_sdm", "bool", PGMDEV_MANAGER_BOOL, ""},
        {"flash_width_bits", "DWORD", PGMDEV_MANAGER_DWORD, ""},
        {"default_prog_mode", "ENUM", PGMDEV_MANAGER_ENUM, ""},
        {"cmf_flash_block_size", "DWORD", PGMDEV_MANAGER_DWORD, ""},
        {"asc_voltage", "STL_STRING", PGMDEV_MANAGER_STRING, ""},
        {"support_sdmmc", "bool", PGMDEV_MANAGER_BOOL, ""},
        {"support_vab", "bool", PGMDEV_MANAGER_BOOL, ""},
        {"support_sdos", "bool", PGMDEV_MANAGER_BOOL, ""},
        {"use_subidcode", "bool", PGMDEV_MANAGER_BOOL, ""},
        {"dummy_string", "STL_STRING", PGMDEV_MANAGER_STRING, ""},
        {"dummy_byte", "BYTE", PGMDEV_MANAGER_BYTE, ""},
        {"dummy_word", "WORD", PGMDEV_MANAGER_WORD, ""},
        {"dummy_dword", "DWORD", PGMDEV_MANAGER_DWORD, ""},
        {"dummy_bool", "bool", PGMDEV_MANAGER_BOOL, ""},
};

// Calls visit(column, field) for every field of `info` in column order; `info` may be const.
// Fields are DEV_FAMILY_ENUM, DEV_DEVICE_ENUM, int (part), std::string, bool, BYTE, WORD or
// DWORD (enumeration values included), so one overloaded visitor reads, writes or lists them.
template <class RECORD, class VISITOR>
void pgmdev_visit_device_info(RECORD& info, VISITOR&& visit) {
  visit(0, info.family);
  visit(1, info.pcf);
  visit(2, info.device);
  visit(3, info.part);
  visit(4, info.skip_pof_bitstream_conversion);
  visit(5, info.no_flash_option_for_unvm);
  visit(6, info.ini_fbgen_flow);
  visit(7, info.support_legacy_f2p);
  visit(8, info.support_cpf);
  visit(9, info.support_ba_flow);
  visit(10, info.support_ob);
  visit(11, info.support_download_mode);
  visit(12, info.support_sld);
  visit(13, info.support_asc);
  visit(14, info.support_asc_ini);
  visit(15, info.support_remote_local_update);
  visit(16, info.need_quillon_padding_mask);
  visit(17, info.support_aes_wo_ini);
  visit(18, info.unsupported_by_tandor2);
  visit(19, info.unsupported_by_quillon);
  visit(20, info.allow_partial_frame);
  visit(21, info.jtag_program_initialize_in_rti);
  visit(22, info.issue_apf_disengage);
  visit(23, info.jtag_program_initialize_microsec);
  visit(24, info.jtag_configuration_prepad_bits);
  visit(25, info.jtag_program_startup_tck);
  visit(26, info.aes_n_fuse_bits);
  visit(27, info.aes_fuse_bit_location);
  visit(28, info.aes_n_nv_key_bits);
  visit(29, info.aes_n_v_key_bits);
  visit(30, info.aes_n_verify_bits);
  visit(31, info.n_iv_bits);
  visit(32, info.ekp_alg_family);
  visit(33, info.ps_cmp_dclk_ratio);
  visit(34, info.fpp_cmp_dclk_ratio);
  visit(35, info.fppx16_cmp_dclk_ratio);
  visit(36, info.fppx32_cmp_dclk_ratio);
  visit(37, info.cmp_fbgen_start_block);
  visit(38, info.cmp_fbgen_end_block);
  visit(39, info.cmp_end_padding_alignement);
  visit(40, info.cmp_end_pad_with_one);
  visit(41, info.support_prpof);
  visit(42, info.need_factory_instr);
  visit(43, info.need_config_io_instr);
  visit(44, info.n_tck_ticks_after_config_io);
  visit(45, info.advanced_family);
  visit(46, info.as_cb_hold_time_issue);
  visit(47, info.as_cb_4byte_addressing);
  visit(48, info.as_read_in_two_steps);
  visit(49, info.as_second_offset_addr);
  visit(50, info.asx1_second_offset_extra_bytes);
  visit(51, info.asx4_second_offset_extra_bytes);
  visit(52, info.asc_dummy_cycle);
  visit(53, info.spi_dummy_clk_x1_128mb);
  visit(54, info.spi_dummy_clk_x1_256mb);
  visit(55, info.spi_dummy_clk_x4_128mb);
  visit(56, info.spi_dummy_clk_x4_256mb);
  visit(57, info.supported_max_cascaded_asc_count);
  visit(58, info.as_minimum_flash_density);
  visit(59, info.skip_fbgen);
  visit(60, info.cfg_dev);
  visit(61, info.cvp_post_iocsr_padding_cbws);
  visit(62, info.hps_post_iocsr_padding_cbws);
  visit(63, info.cvp_pre_core_padding_cbws);
  visit(64, info.cvp_pre_cmp_core_padding_cbws);
  visit(65, info.cvp_pre_enc_core_padding_cbws);
  visit(66, info.fbgen_cvp_core_start_block);
  visit(67, info.fbgen_hps_core_start_block);
  visit(68, info.support_ru_cvp);
  visit(69, info.support_ru_hps);
  visit(70, info.support_fi);
  visit(71, info.fi_program_twice);
  visit(72, info.use_sdm);
  visit(73, info.flash_width_bits);
  visit(74, info.default_prog_mode);
  visit(75, info.cmf_flash_block_size);
  visit(76, info.asc_voltage);
  visit(77, info.support_sdmmc);
  visit(78, info.support_vab);
  visit(79, info.support_sdos);
  visit(80, info.use_subidcode);
  visit(81, info.dummy_string);
  visit(82, info.dummy_byte);
  visit(83, info.dummy_word);
  visit(84, info.dummy_dword);
  visit(85, info.dummy_bool);
}

// A name of an enumeration cell and its value.
struct PGMDEV_API PGMDEV_ENUM_NAME {
  const char* name;
  DWORD value;
};

// The one table shared by the six general enumeration columns (ekp_alg_family,
// cmp_fbgen_start_block, cmp_fbgen_end_block, fbgen_cvp_core_start_block,
// fbgen_hps_core_start_block, default_prog_mode): configuration block names, the
// programming mode, "no value", and the families with their own key-programming algorithm.
inline constexpr PGMDEV_ENUM_NAME PGMDEV_GENERAL_ENUM_NAMES[] = {
    {"NPCF_BLOCK_CB_HEADER2", 6}, {"PGMIO_AVST_X8", 20},        {"NPCF_BLOCK_CRAM", 37},
    {"NPCF_BLOCK_ERAM", 38},      {"NPCF_BLOCK_POSTAMBLE", 39}, {"", 0xFFFFFFFF},
    {"DEV_FAMILY_ZORQA_V", 7},    {"DEV_FAMILY_KALIX_V", 19},   {"DEV_FAMILY_VERANT_III", 26},
    {"DEV_FAMILY_TAMRIS_V", 46},  {"DEV_FAMILY_HEXOR_I", 48},   {"DEV_FAMILY_PADRO_III", 58},
    {"DEV_FAMILY_RUBEL_III", 64},
};

// The device column names only the generic device; the part column's names ("GENERIC" and
// "") take their values from the part catalogue and are resolved at run time. The family
// column's 73 names are the catalogue's family names (value 0: "").
inline constexpr PGMDEV_ENUM_NAME PGMDEV_DEVICE_ENUM_NAMES[] = {
    {"GENERIC", DEV_DEVICE_GENERIC},
    {"", DEV_DEVICE_INVALID},
};
