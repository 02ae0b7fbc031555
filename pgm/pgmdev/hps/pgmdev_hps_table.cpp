// The built-in HPS descriptions: the hardware maps of the two supported HPS generations.
#include <cstring>

#include "base/pgmdev_check.h"
#include "hps/pgmdev_hps_table_data.h"

DWORD PGMDEV_HPS_STRUCTURE::word(DWORD index) const {
  PGMDEV_CHECK(index < WORD_COUNT, "index < PGMDEV_HPS_STRUCTURE::WORD_COUNT", pgmdev::MODULE_MGR);
  DWORD value = 0;
  std::memcpy(&value, reinterpret_cast<const BYTE*>(this) + index * sizeof(DWORD), sizeof(DWORD));
  return value;
}

namespace {

// Every item starts absent; each generation fills in what it has.
PGMDEV_HPS_STRUCTURE absent_row() {
  PGMDEV_HPS_STRUCTURE row;
  std::memset(&row, 0xFF, sizeof(row));
  return row;
}

// Debug items shared by both generations (same debug port architecture).
void fill_common_debug(PGMDEV_HPS_DEBUG& d) {
  d.ir_length = 4;
  d.ap_csw_offset = 0x00;
  d.ap_tar_offset = 0x04;
  d.ap_drw_offset = 0x0C;
  d.ap_idr_offset = 0xFC;
  d.csw_size_word = 0x2;
  d.csw_addr_inc_single = 0x1;
  d.csw_dbg_sw_enable_bit = 31;
  d.tar_autoinc_boundary = 0x400;
  d.lock_access_offset = 0xFB0;
  d.lock_access_key = 0xC5ACCE55;
  d.dscr_offset = 0x088;
  d.itr_offset = 0x084;
  d.drcr_offset = 0x090;
  d.dtrrx_offset = 0x080;
  d.dtrtx_offset = 0x08C;
  d.dscr_halted_bit = 0;
  d.dscr_itr_enable_bit = 13;
  d.dscr_txfull_bit = 29;
  d.drcr_halt_request_bit = 0;
  d.drcr_restart_request_bit = 1;
  d.cti_control_offset = 0x000;
}

void fill_gen1_debug(PGMDEV_HPS_DEBUG& d) {
  fill_common_debug(d);
  d.ahb_ap_index = 0;
  d.apb_ap_index = 1;
  d.rom_table_base = 0x80000000;
  d.cpu_count = 2;
  d.cpu_debug_base[0] = 0x80110000;
  d.cpu_debug_base[1] = 0x80112000;
  d.cpu_cti_base[0] = 0x80118000;
  d.cpu_cti_base[1] = 0x80119000;
}

void fill_gen2_debug(PGMDEV_HPS_DEBUG& d) {
  fill_common_debug(d);
  d.ahb_ap_index = 0;
  d.apb_ap_index = 1;
  d.jtag_ap_index = 2;
  d.rom_table_base = 0x80000000;
  d.cpu_count = 2;
  d.cpu_debug_base[0] = 0x80110000;
  d.cpu_debug_base[1] = 0x80112000;
  d.cpu_cti_base[0] = 0x80118000;
  d.cpu_cti_base[1] = 0x80119000;
}

void fill_gen1_memory(PGMDEV_HPS_MEMORY& m) {
  m.boot_rom_base = 0xFFFD0000;
  m.boot_rom_size = 0x00010000;
  m.ocram_base = 0xFFFF0000;
  m.ocram_size = 0x00010000;
  m.ocram_ecc_control_offset = 0x144;
  m.ocram_ecc_enable_bit = 0;
  m.sdram_base = 0x00000000;
  m.sdram_max_size = 0xC0000000;
  m.sdram_controller_base = 0xFFC25000;
  m.interconnect_base = 0xFF800000;
  m.remap_offset = 0x0;
  m.remap_ocram_bit = 0;
  m.remap_lw_bridge_bit = 4;
  m.remap_bridge_bit = 3;
  m.bridge_base = 0xC0000000;
  m.bridge_size = 0x3C000000;
  m.lw_bridge_base = 0xFF200000;
  m.lw_bridge_size = 0x00200000;
  m.trace_base = 0xFC000000;
  m.dap_base = 0xFF000000;
  m.scu_base = 0xFFFEC000;
  m.l2_cache_base = 0xFFFEF000;
  m.private_timer_base = 0xFFFEC600;
}

void fill_gen2_memory(PGMDEV_HPS_MEMORY& m) {
  m.boot_rom_base = 0xFFFC0000;
  m.boot_rom_size = 0x00020000;
  m.ocram_base = 0xFFE00000;
  m.ocram_size = 0x00040000;
  m.ocram_ecc_control_offset = 0x08;
  m.ocram_ecc_enable_bit = 0;
  m.ocram_ecc_init_done_bit = 16;
  m.sdram_base = 0x00000000;
  m.sdram_max_size = 0xC0000000;
  m.sdram_controller_base = 0xFFCFB000;
  m.interconnect_base = 0xFFD11000;
  m.remap_offset = 0x0;
  m.remap_ocram_bit = 0;
  m.bridge_base = 0xC0000000;
  m.bridge_size = 0x3C000000;
  m.lw_bridge_base = 0xFF200000;
  m.lw_bridge_size = 0x00200000;
  m.trace_base = 0xFF000000;
  m.dap_base = 0xFF000000;
  m.scu_base = 0xFFFFC000;
  m.l2_cache_base = 0xFFFFF000;
  m.private_timer_base = 0xFFFFC600;
}

void fill_gen1_clock(PGMDEV_HPS_CLOCK& c) {
  c.base = 0xFFD04000;
  c.control_offset = 0x00;
  c.safe_mode_bit = 0;
  c.bypass_offset = 0x04;
  c.stat_offset = 0x14;
  c.busy_bit = 0;
  c.pll_count = 3;
  c.pll_control_offset[0] = 0x40;
  c.pll_control_offset[1] = 0x80;
  c.pll_control_offset[2] = 0xC0;
  c.pll_lock_bit[0] = 0;
  c.pll_lock_bit[1] = 1;
  c.pll_lock_bit[2] = 2;
  c.pll_vco_offset[0] = 0x40;
  c.pll_vco_offset[1] = 0x80;
  c.pll_vco_offset[2] = 0xC0;
  c.pll_reset_bit = 31;
  c.pll_power_down_bit = 2;
  c.osc1_frequency_hz = 25000000;
  c.boot_mpu_frequency_hz = 25000000;
  c.boot_l4_frequency_hz = 25000000;
  c.peripheral_enable_offset = 0xA0;
  c.qspi_clock_enable_bit = 11;
  c.nand_clock_enable_bit = 10;
  c.nand_x_clock_enable_bit = 9;
  c.sdmmc_clock_enable_bit = 8;
  c.qspi_clock_source_offset = 0xAC;
  c.qspi_clock_source_shift = 4;
  c.qspi_clock_source_width = 2;
  c.qspi_default_frequency_hz = 100000000;
  c.nand_clock_source_shift = 2;
  c.nand_clock_source_width = 2;
  c.nand_default_frequency_hz = 50000000;
  c.sdmmc_clock_source_shift = 0;
  c.sdmmc_clock_source_width = 2;
  c.sdmmc_default_frequency_hz = 50000000;
  c.divider_offset = 0x84;
  c.divider_width = 9;
  c.gate_count = 12;
}

void fill_gen2_clock(PGMDEV_HPS_CLOCK& c) {
  c.base = 0xFFD04000;
  c.control_offset = 0x00;
  c.bypass_offset = 0x2C;
  c.stat_offset = 0x04;
  c.busy_bit = 0;
  c.pll_count = 2;
  c.pll_control_offset[0] = 0x40;
  c.pll_control_offset[1] = 0xC0;
  c.pll_lock_bit[0] = 8;
  c.pll_lock_bit[1] = 9;
  c.pll_vco_offset[0] = 0x40;
  c.pll_vco_offset[1] = 0xC0;
  c.pll_reset_bit = 2;
  c.pll_power_down_bit = 0;
  c.osc1_frequency_hz = 25000000;
  c.osc2_frequency_hz = 25000000;
  c.boot_mpu_frequency_hz = 25000000;
  c.boot_l4_frequency_hz = 25000000;
  c.peripheral_enable_offset = 0xE4;
  c.qspi_clock_enable_bit = 11;
  c.nand_clock_enable_bit = 10;
  c.sdmmc_clock_enable_bit = 5;
  c.qspi_clock_source_offset = 0x7C;
  c.qspi_clock_source_shift = 16;
  c.qspi_clock_source_width = 3;
  c.qspi_default_frequency_hz = 200000000;
  c.nand_clock_source_shift = 16;
  c.nand_clock_source_width = 3;
  c.nand_default_frequency_hz = 100000000;
  c.sdmmc_clock_source_shift = 16;
  c.sdmmc_clock_source_width = 3;
  c.sdmmc_default_frequency_hz = 200000000;
  c.divider_offset = 0x60;
  c.divider_width = 11;
  c.gate_count = 16;
}

void fill_gen1_reset(PGMDEV_HPS_RESET& r) {
  r.base = 0xFFD05000;
  r.status_offset = 0x00;
  r.control_offset = 0x04;
  r.warm_reset_request_bit = 1;
  r.cold_reset_request_bit = 0;
  r.cold_reset_status_bit = 0;
  r.mpu_reset_offset = 0x10;
  r.cpu1_reset_bit = 1;
  r.peripheral_reset_offset = 0x14;
  r.peripheral2_reset_offset = 0x18;
  r.bridge_reset_offset = 0x1C;
  r.qspi_reset_bit = 5;
  r.nand_reset_bit = 4;
  r.sdmmc_reset_bit = 22;
  r.dma_reset_bit = 28;
  r.watchdog_reset_bit[0] = 6;
  r.watchdog_reset_bit[1] = 7;
  r.sdram_reset_bit = 29;
  r.qspi_ecc_reset_bit = 0;
  r.nand_ecc_reset_bit[0] = 4;
  r.nand_ecc_reset_bit[1] = 5;
  r.nand_ecc_reset_bit[2] = 6;
  r.sdmmc_ecc_reset_bit = 7;
  r.bridge_reset_bit[0] = 0;
  r.bridge_reset_bit[1] = 1;
  r.bridge_reset_bit[2] = 2;
  r.reset_pulse_cycles = 16;
  r.status_sticky_mask = 0x001F1F1F;
  r.tap_reset_offset = 0x20;
  r.tap_reset_bit = 0;
  r.peripheral_reset_count = 2;
}

void fill_gen2_reset(PGMDEV_HPS_RESET& r) {
  r.base = 0xFFD05000;
  r.status_offset = 0x00;
  r.control_offset = 0x0C;
  r.warm_reset_request_bit = 1;
  r.cold_reset_request_bit = 0;
  r.cold_reset_status_bit = 0;
  r.mpu_reset_offset = 0x20;
  r.cpu1_reset_bit = 1;
  r.peripheral_reset_offset = 0x24;
  r.peripheral2_reset_offset = 0x28;
  r.bridge_reset_offset = 0x2C;
  r.qspi_reset_bit = 6;
  r.nand_reset_bit = 5;
  r.sdmmc_reset_bit = 7;
  r.dma_reset_bit = 16;
  r.watchdog_reset_bit[0] = 0;
  r.watchdog_reset_bit[1] = 1;
  r.ocram_reset_bit = 8;
  r.sdram_reset_bit = 9;
  r.qspi_ecc_reset_bit = 4;
  r.nand_ecc_reset_bit[0] = 5;
  r.nand_ecc_reset_bit[1] = 6;
  r.nand_ecc_reset_bit[2] = 7;
  r.sdmmc_ecc_reset_bit = 8;
  r.bridge_reset_bit[0] = 0;
  r.bridge_reset_bit[1] = 1;
  r.bridge_reset_bit[2] = 2;
  r.reset_pulse_cycles = 16;
  r.status_sticky_mask = 0x0000FFFF;
  r.peripheral_reset_count = 2;
}

void fill_gen1_system(PGMDEV_HPS_SYSTEM& s) {
  s.base = 0xFFD08000;
  s.silicon_id_offset = 0x00;
  s.boot_info_offset = 0x14;
  s.boot_select_shift = 0;
  s.boot_select_width = 3;
  s.boot_select_qspi_value[0] = 6;
  s.boot_select_qspi_value[1] = 7;
  s.boot_select_nand_value[0] = 2;
  s.boot_select_nand_value[1] = 3;
  s.boot_select_sdmmc_value[0] = 4;
  s.boot_select_sdmmc_value[1] = 5;
  s.clock_select_shift = 3;
  s.clock_select_width = 2;
  s.pin_mux_base = 0xFFD08400;
  s.pin_mux_count = 205;
  s.qspi_pin_mux_first = 0x148;
  s.qspi_pin_count = 8;
  s.nand_pin_mux_first = 0x114;
  s.nand_pin_count = 16;
  s.sdmmc_pin_mux_first = 0x0E4;
  s.sdmmc_pin_count = 10;
  s.flash_mux_value = 3;
  s.warm_ram_offset = 0x20;
  s.warm_ram_enable_bit = 0;
  s.rom_code_control_offset = 0xC0;
  s.rom_code_warm_ram_bit = 1;
  s.ecc_interrupt_offset = 0x140;
  s.nand_ecc_enable_offset = 0x150;
  s.qspi_ecc_enable_offset = 0x158;
  s.sdmmc_ecc_enable_offset = 0x15C;
  s.ecc_enable_bit = 0;
  s.frz_control_offset = 0x30;
}

void fill_gen2_system(PGMDEV_HPS_SYSTEM& s) {
  s.base = 0xFFD06000;
  s.silicon_id_offset = 0x00;
  s.boot_info_offset = 0x28;
  s.boot_select_shift = 12;
  s.boot_select_width = 3;
  s.boot_select_qspi_value[0] = 6;
  s.boot_select_qspi_value[1] = 7;
  s.boot_select_nand_value[0] = 2;
  s.boot_select_nand_value[1] = 3;
  s.boot_select_sdmmc_value[0] = 4;
  s.boot_select_sdmmc_value[1] = 5;
  s.clock_select_shift = 16;
  s.clock_select_width = 2;
  s.pin_mux_base = 0xFFD07000;
  s.pin_mux_count = 68;
  s.qspi_pin_mux_first = 0x000;
  s.qspi_pin_count = 9;
  s.nand_pin_mux_first = 0x030;
  s.nand_pin_count = 16;
  s.sdmmc_pin_mux_first = 0x070;
  s.sdmmc_pin_count = 10;
  s.flash_mux_value = 4;
  s.rom_code_control_offset = 0x200;
  s.rom_code_warm_ram_bit = 1;
  s.ecc_interrupt_offset = 0x94;
  s.nand_ecc_enable_offset = 0x08;
  s.qspi_ecc_enable_offset = 0x08;
  s.sdmmc_ecc_enable_offset = 0x08;
  s.ecc_enable_bit = 0;
}

// Register offsets of the quad-SPI controller, common to both generations.
void fill_qspi_registers(PGMDEV_HPS_QSPI& q) {
  q.config_offset = 0x00;
  q.enable_bit = 0;
  q.idle_bit = 31;
  q.direct_access_bit = 7;
  q.decode_chip_select_bit = 9;
  q.chip_select_shift = 10;
  q.chip_select_width = 4;
  q.baud_divisor_shift = 19;
  q.baud_divisor_width = 4;
  q.read_instruction_offset = 0x04;
  q.write_instruction_offset = 0x08;
  q.delay_offset = 0x0C;
  q.read_capture_offset = 0x10;
  q.device_size_offset = 0x14;
  q.address_bytes_shift = 0;
  q.address_bytes_width = 4;
  q.page_bytes_shift = 4;
  q.page_bytes_width = 12;
  q.block_bytes_shift = 16;
  q.block_bytes_width = 5;
  q.sram_partition_offset = 0x18;
  q.indirect_trigger_offset = 0x1C;
  q.dma_config_offset = 0x20;
  q.remap_offset = 0x24;
  q.mode_bit_offset = 0x28;
  q.sram_fill_offset = 0x2C;
  q.tx_threshold_offset = 0x30;
  q.rx_threshold_offset = 0x34;
  q.write_completion_offset = 0x38;
  q.poll_expiry_offset = 0x3C;
  q.interrupt_status_offset = 0x40;
  q.interrupt_mask_offset = 0x44;
  q.write_protect_low_offset = 0x50;
  q.write_protect_high_offset = 0x54;
  q.write_protect_offset = 0x58;
  q.indirect_read_control_offset = 0x60;
  q.indirect_read_watermark_offset = 0x64;
  q.indirect_read_start_offset = 0x68;
  q.indirect_read_count_offset = 0x6C;
  q.indirect_write_control_offset = 0x70;
  q.indirect_write_watermark_offset = 0x74;
  q.indirect_write_start_offset = 0x78;
  q.indirect_write_count_offset = 0x7C;
  q.command_control_offset = 0x90;
  q.command_address_offset = 0x94;
  q.command_read_data_offset[0] = 0xA0;
  q.command_read_data_offset[1] = 0xA4;
  q.command_write_data_offset[0] = 0xA8;
  q.command_write_data_offset[1] = 0xAC;
  q.module_id_offset = 0xFC;
}

void fill_gen1_qspi(PGMDEV_HPS_QSPI& q) {
  fill_qspi_registers(q);
  q.base = 0xFF705000;
  q.data_base = 0xFFA00000;
  q.data_size = 0x00100000;
  q.chip_select_count = 4;
  q.fifo_depth_words = 128;
  q.sram_size_words = 128;
}

void fill_gen2_qspi(PGMDEV_HPS_QSPI& q) {
  fill_qspi_registers(q);
  q.base = 0xFF809000;
  q.data_base = 0xFFA00000;
  q.data_size = 0x00100000;
  q.chip_select_count = 4;
  q.fifo_depth_words = 256;
  q.sram_size_words = 256;
  q.module_id_offset = INVALID_DWORD;  // this generation has no module ID register
}

// Register offsets of the NAND controller, common to both generations.
void fill_nand_registers(PGMDEV_HPS_NAND& n) {
  n.device_reset_offset = 0x000;
  n.transfer_spare_offset = 0x010;
  n.load_wait_count_offset = 0x060;
  n.program_wait_count_offset = 0x070;
  n.erase_wait_count_offset = 0x080;
  n.interrupt_monitor_count_offset = 0x090;
  n.rb_pin_enabled_offset = 0x0A0;
  n.multiplane_offset = 0x0B0;
  n.multiplane_read_enable_offset = 0x0C0;
  n.ecc_enable_offset = 0x0E0;
  n.global_interrupt_enable_offset = 0x0F0;
  n.two_row_address_cycles_offset = 0x120;
  n.first_block_of_next_plane_offset = 0x150;
  n.read_status_offset = 0x1A0;
  n.ecc_correction_offset = 0x1B0;
  n.device_main_area_size_offset = 0x260;
  n.device_spare_area_size_offset = 0x270;
  n.devices_connected_offset = 0x250;
  n.pages_per_block_offset = 0x150;
  n.device_width_offset = 0x1F0;
  n.manufacturer_id_offset = 0x300;
  n.device_id_offset = 0x310;
  n.device_param_offset[0] = 0x320;
  n.device_param_offset[1] = 0x330;
  n.device_param_offset[2] = 0x340;
  n.logical_page_data_size_offset = 0x350;
  n.logical_page_spare_size_offset = 0x360;
  n.revision_offset = 0x370;
  n.onfi_device_features_offset = 0x380;
  n.onfi_timing_mode_offset = 0x3A0;
  n.onfi_device_page_count_offset[0] = 0x3C0;
  n.onfi_device_page_count_offset[1] = 0x3D0;
  for (DWORD bank = 0; bank < 4; ++bank) {
    n.interrupt_status_offset[bank] = 0x410 + 0x50 * bank;
    n.interrupt_enable_offset[bank] = 0x420 + 0x50 * bank;
  }
  n.dma_enable_offset = 0x700;
  n.dma_enable_bit = 0;
  n.reset_complete_bit = 13;
  n.erase_complete_bit = 3;
  n.program_complete_bit = 2;
  n.map_command_shift = 26;
  n.map_bank_shift = 24;
  n.map_block_shift = 6;
  n.map_page_shift = 0;
}

void fill_gen1_nand(PGMDEV_HPS_NAND& n) {
  fill_nand_registers(n);
  n.base = 0xFFB80000;
  n.data_base = 0xFFB90000;
  n.data_size = 0x00010000;
  n.bank_count = 4;
  n.ecc_sector_bytes = 512;
  n.max_ecc_bits = 8;
  n.spare_area_skip_bytes = 2;
}

void fill_gen2_nand(PGMDEV_HPS_NAND& n) {
  fill_nand_registers(n);
  n.base = 0xFFB80000;
  n.data_base = 0xFFB90000;
  n.data_size = 0x00010000;
  n.bank_count = 1;
  n.ecc_sector_bytes = 512;
  n.max_ecc_bits = 24;
  n.spare_area_skip_bytes = 2;
  n.multiplane_read_enable_offset = INVALID_DWORD;
  for (DWORD bank = 1; bank < 4; ++bank) {
    n.interrupt_status_offset[bank] = INVALID_DWORD;
    n.interrupt_enable_offset[bank] = INVALID_DWORD;
  }
}

// Register offsets of the SD/MMC controller, common to both generations.
void fill_sdmmc_registers(PGMDEV_HPS_SDMMC& m) {
  m.fifo_offset = 0x200;
  m.control_offset = 0x00;
  m.power_enable_offset = 0x04;
  m.clock_divider_offset = 0x08;
  m.clock_source_offset = 0x0C;
  m.clock_enable_offset = 0x10;
  m.timeout_offset = 0x14;
  m.card_type_offset = 0x18;
  m.block_size_offset = 0x1C;
  m.byte_count_offset = 0x20;
  m.interrupt_mask_offset = 0x24;
  m.command_argument_offset = 0x28;
  m.command_offset = 0x2C;
  for (DWORD i = 0; i < 4; ++i) m.response_offset[i] = 0x30 + 4 * i;
  m.masked_interrupt_offset = 0x40;
  m.raw_interrupt_offset = 0x44;
  m.status_offset = 0x48;
  m.fifo_threshold_offset = 0x4C;
  m.card_detect_offset = 0x50;
  m.write_protect_offset = 0x54;
  m.card_detect_bit = 0;
  m.write_protect_bit = 0;
  m.bus_mode_offset = 0x80;
  m.start_command_bit = 31;
  m.use_hold_register_bit = 29;
  m.card_reset_offset = 0x78;
}

void fill_gen1_sdmmc(PGMDEV_HPS_SDMMC& m) {
  fill_sdmmc_registers(m);
  m.base = 0xFF704000;
  m.fifo_depth_words = 1024;
  m.card_count = 1;
}

void fill_gen2_sdmmc(PGMDEV_HPS_SDMMC& m) {
  fill_sdmmc_registers(m);
  m.base = 0xFF808000;
  m.fifo_depth_words = 1024;
  m.card_count = 1;
}

void fill_gen1_watchdog(PGMDEV_HPS_WATCHDOG& w) {
  w.count = 2;
  w.base[0] = 0xFFD02000;
  w.base[1] = 0xFFD03000;
  w.control_offset = 0x00;
  w.enable_bit = 0;
  w.restart_offset = 0x0C;
  w.restart_key = 0x76;
  w.pause_on_debug_bit = 4;
}

void fill_gen2_watchdog(PGMDEV_HPS_WATCHDOG& w) {
  w.count = 2;
  w.base[0] = 0xFFD00200;
  w.base[1] = 0xFFD00300;
  w.control_offset = 0x00;
  w.enable_bit = 0;
  w.restart_offset = 0x0C;
  w.restart_key = 0x76;
}

void fill_gen1_boot(PGMDEV_HPS_BOOT& b) {
  b.header_offset = 0x40;
  b.header_magic = 0x31305341;
  b.header_size = 0x0C;
  b.image_alignment = 0x10000;
  b.image_max_size = 0x10000;
  b.image_copies = 4;
  b.qspi_image_offset = 0x00000000;
  b.nand_image_offset = 0x00000000;
  b.sdmmc_image_offset = 0x00000000;
  b.load_address = 0xFFFF0000;
  b.entry_offset = 0x50;
  b.checksum_kind = 1;
}

void fill_gen2_boot(PGMDEV_HPS_BOOT& b) {
  b.header_offset = 0x40;
  b.header_magic = 0x31305341;
  b.header_size = 0x10;
  b.image_alignment = 0x40000;
  b.image_max_size = 0x40000;
  b.image_copies = 4;
  b.qspi_image_offset = 0x00000000;
  b.nand_image_offset = 0x00000000;
  b.sdmmc_image_offset = 0x00000000;
  b.load_address = 0xFFE00000;
  b.entry_offset = 0x50;
  b.checksum_kind = 2;
}

PGMDEV_HPS_STRUCTURE first_generation() {
  PGMDEV_HPS_STRUCTURE row = absent_row();
  row.dap_idcode = 0x4BA00477;
  fill_gen1_debug(row.debug);
  fill_gen1_memory(row.memory);
  fill_gen1_clock(row.clock);
  fill_gen1_reset(row.reset);
  fill_gen1_system(row.system);
  fill_gen1_qspi(row.qspi);
  fill_gen1_nand(row.nand);
  fill_gen1_sdmmc(row.sdmmc);
  fill_gen1_watchdog(row.watchdog);
  fill_gen1_boot(row.boot);
  return row;
}

PGMDEV_HPS_STRUCTURE second_generation() {
  PGMDEV_HPS_STRUCTURE row = absent_row();
  row.dap_idcode = 0x4BA00478;
  fill_gen2_debug(row.debug);
  fill_gen2_memory(row.memory);
  fill_gen2_clock(row.clock);
  fill_gen2_reset(row.reset);
  fill_gen2_system(row.system);
  fill_gen2_qspi(row.qspi);
  fill_gen2_nand(row.nand);
  fill_gen2_sdmmc(row.sdmmc);
  fill_gen2_watchdog(row.watchdog);
  fill_gen2_boot(row.boot);
  return row;
}

}  // namespace

const PGMDEV_HPS_STRUCTURE* pgmdev::hps_table() {
  static const PGMDEV_HPS_STRUCTURE table[HPS_TABLE_SIZE] = {first_generation(),
                                                             second_generation()};
  return table;
}
