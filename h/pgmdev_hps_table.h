// Word layout of one HPS description: the hardware map a client needs to drive an SoC's HPS.
#pragma once

#include <cstddef>

#include "pgm_types.h"

// Every item is one 32-bit word. Addresses are in the HPS processor's address map (debug
// items in the debug bus map); offsets are relative to the group's base address; "_bit"
// items are bit positions within the named register; 0xFFFFFFFF (INVALID_DWORD) marks an
// item the HPS kind lacks. Groups and their word ranges:
//
//   words   0        dap_idcode           JTAG ID code of the debug access port (selection key)
//   words   1 -  31  PGMDEV_HPS_DEBUG     access ports, core debug and cross-trigger registers
//   words  32 -  55  PGMDEV_HPS_MEMORY    boot ROM, on-chip RAM, SDRAM window, bridges, remap
//   words  56 -  95  PGMDEV_HPS_CLOCK     clock manager: PLLs, boot clocks, flash clock gates
//   words  96 - 127  PGMDEV_HPS_RESET     reset manager: per-peripheral reset bits
//   words 128 - 159  PGMDEV_HPS_SYSTEM    system manager: boot select, pin mux, ECC, warm boot
//   words 160 - 215  PGMDEV_HPS_QSPI      quad-SPI flash controller
//   words 216 - 271  PGMDEV_HPS_NAND      NAND flash controller
//   words 272 - 303  PGMDEV_HPS_SDMMC     SD/MMC controller
//   words 304 - 311  PGMDEV_HPS_WATCHDOG  watchdog that must be held off while programming
//   words 312 - 323  PGMDEV_HPS_BOOT      boot ROM hand-off: image header and load address
//   words 324 - 334  reserved             0xFFFFFFFF in every kind

// Debug access port and processor cores (words 1-31).
struct PGMDEV_API PGMDEV_HPS_DEBUG {
  DWORD ir_length;      // JTAG instruction register length of the DAP
  DWORD ahb_ap_index;   // access port that reaches the system bus
  DWORD apb_ap_index;   // access port that reaches the debug bus
  DWORD jtag_ap_index;  // access port of the scan chain behind the DAP
  DWORD ap_csw_offset;  // access port registers (control/status, address, data, ID)
  DWORD ap_tar_offset;
  DWORD ap_drw_offset;
  DWORD ap_idr_offset;
  DWORD csw_size_word;        // CSW value for 32-bit accesses
  DWORD csw_addr_inc_single;  // CSW auto-increment field value
  DWORD csw_dbg_sw_enable_bit;
  DWORD tar_autoinc_boundary;  // auto-increment wraps at this byte boundary
  DWORD rom_table_base;
  DWORD cpu_count;
  DWORD cpu_debug_base[2];  // per core; absent cores are 0xFFFFFFFF
  DWORD cpu_cti_base[2];
  DWORD lock_access_offset;  // core debug registers
  DWORD lock_access_key;
  DWORD dscr_offset;
  DWORD itr_offset;
  DWORD drcr_offset;
  DWORD dtrrx_offset;
  DWORD dtrtx_offset;
  DWORD dscr_halted_bit;
  DWORD dscr_itr_enable_bit;
  DWORD dscr_txfull_bit;
  DWORD drcr_halt_request_bit;
  DWORD drcr_restart_request_bit;
  DWORD cti_control_offset;
};

// Memory map of the HPS (words 32-55).
struct PGMDEV_API PGMDEV_HPS_MEMORY {
  DWORD boot_rom_base;
  DWORD boot_rom_size;
  DWORD ocram_base;
  DWORD ocram_size;
  DWORD ocram_ecc_control_offset;  // in the system manager
  DWORD ocram_ecc_enable_bit;
  DWORD ocram_ecc_init_done_bit;
  DWORD sdram_base;
  DWORD sdram_max_size;
  DWORD sdram_controller_base;
  DWORD interconnect_base;
  DWORD remap_offset;     // in the interconnect registers
  DWORD remap_ocram_bit;  // maps on-chip RAM at address 0
  DWORD remap_lw_bridge_bit;
  DWORD remap_bridge_bit;
  DWORD bridge_base;  // HPS-to-FPGA bridge window
  DWORD bridge_size;
  DWORD lw_bridge_base;  // lightweight HPS-to-FPGA bridge window
  DWORD lw_bridge_size;
  DWORD trace_base;
  DWORD dap_base;  // debug access port as seen from the processor
  DWORD scu_base;  // snoop control unit and private peripherals
  DWORD l2_cache_base;
  DWORD private_timer_base;
};

// Clock manager (words 56-95).
struct PGMDEV_API PGMDEV_HPS_CLOCK {
  DWORD base;
  DWORD control_offset;
  DWORD safe_mode_bit;
  DWORD bypass_offset;
  DWORD stat_offset;
  DWORD busy_bit;
  DWORD pll_count;
  DWORD pll_control_offset[3];  // main, peripheral, SDRAM (or second) PLL
  DWORD pll_lock_bit[3];
  DWORD pll_vco_offset[3];
  DWORD pll_reset_bit;
  DWORD pll_power_down_bit;
  DWORD osc1_frequency_hz;  // reference clocks at boot
  DWORD osc2_frequency_hz;
  DWORD boot_mpu_frequency_hz;
  DWORD boot_l4_frequency_hz;
  DWORD peripheral_enable_offset;  // clock gates of the peripheral group
  DWORD qspi_clock_enable_bit;
  DWORD nand_clock_enable_bit;
  DWORD nand_x_clock_enable_bit;
  DWORD sdmmc_clock_enable_bit;
  DWORD qspi_clock_source_offset;
  DWORD qspi_clock_source_shift;
  DWORD qspi_clock_source_width;
  DWORD qspi_default_frequency_hz;
  DWORD nand_clock_source_shift;
  DWORD nand_clock_source_width;
  DWORD nand_default_frequency_hz;
  DWORD sdmmc_clock_source_shift;
  DWORD sdmmc_clock_source_width;
  DWORD sdmmc_default_frequency_hz;
  DWORD divider_offset;
  DWORD divider_width;
  DWORD gate_count;
};

// Reset manager (words 96-127).
struct PGMDEV_API PGMDEV_HPS_RESET {
  DWORD base;
  DWORD status_offset;
  DWORD control_offset;
  DWORD warm_reset_request_bit;
  DWORD cold_reset_request_bit;
  DWORD cold_reset_status_bit;
  DWORD mpu_reset_offset;
  DWORD cpu1_reset_bit;
  DWORD peripheral_reset_offset;  // first peripheral reset register
  DWORD peripheral2_reset_offset;
  DWORD bridge_reset_offset;
  DWORD qspi_reset_bit;
  DWORD nand_reset_bit;
  DWORD sdmmc_reset_bit;
  DWORD dma_reset_bit;
  DWORD watchdog_reset_bit[2];
  DWORD ocram_reset_bit;
  DWORD sdram_reset_bit;
  DWORD qspi_ecc_reset_bit;
  DWORD nand_ecc_reset_bit[3];  // data, read FIFO, write FIFO RAMs
  DWORD sdmmc_ecc_reset_bit;
  DWORD bridge_reset_bit[3];  // HPS-to-FPGA, FPGA-to-HPS, lightweight
  DWORD reset_pulse_cycles;   // cycles a peripheral reset must be held
  DWORD status_sticky_mask;
  DWORD tap_reset_offset;
  DWORD tap_reset_bit;
  DWORD peripheral_reset_count;  // peripheral reset registers
};

// System manager (words 128-159).
struct PGMDEV_API PGMDEV_HPS_SYSTEM {
  DWORD base;
  DWORD silicon_id_offset;
  DWORD boot_info_offset;
  DWORD boot_select_shift;  // boot source field in the boot information register
  DWORD boot_select_width;
  DWORD boot_select_qspi_value[2];  // boot select values that choose quad-SPI flash
  DWORD boot_select_nand_value[2];
  DWORD boot_select_sdmmc_value[2];
  DWORD clock_select_shift;
  DWORD clock_select_width;
  DWORD pin_mux_base;
  DWORD pin_mux_count;
  DWORD qspi_pin_mux_first;  // first pin-mux register of the quad-SPI pins
  DWORD qspi_pin_count;
  DWORD nand_pin_mux_first;
  DWORD nand_pin_count;
  DWORD sdmmc_pin_mux_first;
  DWORD sdmmc_pin_count;
  DWORD flash_mux_value;  // pin-mux value that selects the flash function
  DWORD warm_ram_offset;  // warm-boot-from-RAM descriptor
  DWORD warm_ram_enable_bit;
  DWORD rom_code_control_offset;
  DWORD rom_code_warm_ram_bit;
  DWORD ecc_interrupt_offset;
  DWORD nand_ecc_enable_offset;
  DWORD qspi_ecc_enable_offset;
  DWORD sdmmc_ecc_enable_offset;
  DWORD ecc_enable_bit;
  DWORD frz_control_offset;  // I/O freeze while reconfiguring
};

// Quad-SPI flash controller (words 160-215).
struct PGMDEV_API PGMDEV_HPS_QSPI {
  DWORD base;       // register block
  DWORD data_base;  // memory-mapped data window
  DWORD data_size;
  DWORD chip_select_count;
  DWORD fifo_depth_words;
  DWORD sram_size_words;
  DWORD config_offset;
  DWORD enable_bit;
  DWORD idle_bit;
  DWORD direct_access_bit;
  DWORD decode_chip_select_bit;
  DWORD chip_select_shift;
  DWORD chip_select_width;
  DWORD baud_divisor_shift;
  DWORD baud_divisor_width;
  DWORD read_instruction_offset;
  DWORD write_instruction_offset;
  DWORD delay_offset;
  DWORD read_capture_offset;
  DWORD device_size_offset;
  DWORD address_bytes_shift;
  DWORD address_bytes_width;
  DWORD page_bytes_shift;
  DWORD page_bytes_width;
  DWORD block_bytes_shift;
  DWORD block_bytes_width;
  DWORD sram_partition_offset;
  DWORD indirect_trigger_offset;
  DWORD dma_config_offset;
  DWORD remap_offset;
  DWORD mode_bit_offset;
  DWORD sram_fill_offset;
  DWORD tx_threshold_offset;
  DWORD rx_threshold_offset;
  DWORD write_completion_offset;
  DWORD poll_expiry_offset;
  DWORD interrupt_status_offset;
  DWORD interrupt_mask_offset;
  DWORD write_protect_low_offset;
  DWORD write_protect_high_offset;
  DWORD write_protect_offset;
  DWORD indirect_read_control_offset;
  DWORD indirect_read_watermark_offset;
  DWORD indirect_read_start_offset;
  DWORD indirect_read_count_offset;
  DWORD indirect_write_control_offset;
  DWORD indirect_write_watermark_offset;
  DWORD indirect_write_start_offset;
  DWORD indirect_write_count_offset;
  DWORD command_control_offset;
  DWORD command_address_offset;
  DWORD command_read_data_offset[2];  // lower and upper word
  DWORD command_write_data_offset[2];
  DWORD module_id_offset;
};

// NAND flash controller (words 216-271).
struct PGMDEV_API PGMDEV_HPS_NAND {
  DWORD base;       // register block
  DWORD data_base;  // command/data window
  DWORD data_size;
  DWORD bank_count;
  DWORD ecc_sector_bytes;
  DWORD max_ecc_bits;
  DWORD spare_area_skip_bytes;
  DWORD device_reset_offset;
  DWORD transfer_spare_offset;
  DWORD load_wait_count_offset;
  DWORD program_wait_count_offset;
  DWORD erase_wait_count_offset;
  DWORD interrupt_monitor_count_offset;
  DWORD rb_pin_enabled_offset;
  DWORD multiplane_offset;
  DWORD multiplane_read_enable_offset;
  DWORD ecc_enable_offset;
  DWORD global_interrupt_enable_offset;
  DWORD two_row_address_cycles_offset;
  DWORD first_block_of_next_plane_offset;
  DWORD read_status_offset;
  DWORD ecc_correction_offset;
  DWORD device_main_area_size_offset;
  DWORD device_spare_area_size_offset;
  DWORD devices_connected_offset;
  DWORD pages_per_block_offset;
  DWORD device_width_offset;
  DWORD manufacturer_id_offset;
  DWORD device_id_offset;
  DWORD device_param_offset[3];
  DWORD logical_page_data_size_offset;
  DWORD logical_page_spare_size_offset;
  DWORD revision_offset;
  DWORD onfi_device_features_offset;
  DWORD onfi_timing_mode_offset;
  DWORD onfi_device_page_count_offset[2];
  DWORD interrupt_status_offset[4];  // per bank
  DWORD interrupt_enable_offset[4];
  DWORD dma_enable_offset;
  DWORD dma_enable_bit;
  DWORD reset_complete_bit;
  DWORD erase_complete_bit;
  DWORD program_complete_bit;
  DWORD map_command_shift;  // command-window address fields
  DWORD map_bank_shift;
  DWORD map_block_shift;
  DWORD map_page_shift;
};

// SD/MMC controller (words 272-303).
struct PGMDEV_API PGMDEV_HPS_SDMMC {
  DWORD base;
  DWORD fifo_offset;
  DWORD fifo_depth_words;
  DWORD card_count;
  DWORD control_offset;
  DWORD power_enable_offset;
  DWORD clock_divider_offset;
  DWORD clock_source_offset;
  DWORD clock_enable_offset;
  DWORD timeout_offset;
  DWORD card_type_offset;
  DWORD block_size_offset;
  DWORD byte_count_offset;
  DWORD interrupt_mask_offset;
  DWORD command_argument_offset;
  DWORD command_offset;
  DWORD response_offset[4];
  DWORD masked_interrupt_offset;
  DWORD raw_interrupt_offset;
  DWORD status_offset;
  DWORD fifo_threshold_offset;
  DWORD card_detect_offset;
  DWORD write_protect_offset;
  DWORD card_detect_bit;
  DWORD write_protect_bit;
  DWORD bus_mode_offset;
  DWORD start_command_bit;
  DWORD use_hold_register_bit;
  DWORD card_reset_offset;
};

// Watchdog (words 304-311).
struct PGMDEV_API PGMDEV_HPS_WATCHDOG {
  DWORD count;
  DWORD base[2];
  DWORD control_offset;
  DWORD enable_bit;
  DWORD restart_offset;
  DWORD restart_key;
  DWORD pause_on_debug_bit;
};

// Boot ROM hand-off (words 312-323).
struct PGMDEV_API PGMDEV_HPS_BOOT {
  DWORD header_offset;  // where the boot image header sits in an image
  DWORD header_magic;
  DWORD header_size;
  DWORD image_alignment;  // boot images start on this byte boundary
  DWORD image_max_size;
  DWORD image_copies;       // redundant boot images the ROM tries in turn
  DWORD qspi_image_offset;  // flash offset of the first boot image
  DWORD nand_image_offset;
  DWORD sdmmc_image_offset;
  DWORD load_address;   // where the ROM copies the boot image
  DWORD entry_offset;   // entry point within the loaded image
  DWORD checksum_kind;  // 0 = none, 1 = 16-bit sum, 2 = CRC-32
};

// One HPS kind: 335 words, word 0 the key. Standard layout, so word i lies at byte 4*i.
struct PGMDEV_API PGMDEV_HPS_STRUCTURE {
  static constexpr DWORD WORD_COUNT = 335;

  DWORD dap_idcode;
  PGMDEV_HPS_DEBUG debug;
  PGMDEV_HPS_MEMORY memory;
  PGMDEV_HPS_CLOCK clock;
  PGMDEV_HPS_RESET reset;
  PGMDEV_HPS_SYSTEM system;
  PGMDEV_HPS_QSPI qspi;
  PGMDEV_HPS_NAND nand;
  PGMDEV_HPS_SDMMC sdmmc;
  PGMDEV_HPS_WATCHDOG watchdog;
  PGMDEV_HPS_BOOT boot;
  DWORD reserved[11];

  // Word `index` (below WORD_COUNT) of the record, for clients that walk it by number.
  DWORD word(DWORD index) const;
};

static_assert(sizeof(PGMDEV_HPS_STRUCTURE) == PGMDEV_HPS_STRUCTURE::WORD_COUNT * sizeof(DWORD),
              "an HPS description is 335 words");
static_assert(offsetof(PGMDEV_HPS_STRUCTURE, debug) == 1 * sizeof(DWORD), "debug group at word 1");
static_assert(offsetof(PGMDEV_HPS_STRUCTURE, memory) == 32 * sizeof(DWORD),
              "memory group at word 32");
static_assert(offsetof(PGMDEV_HPS_STRUCTURE, clock) == 56 * sizeof(DWORD),
              "clock group at word 56");
static_assert(offsetof(PGMDEV_HPS_STRUCTURE, reset) == 96 * sizeof(DWORD),
              "reset group at word 96");
static_assert(offsetof(PGMDEV_HPS_STRUCTURE, system) == 128 * sizeof(DWORD),
              "system group at word 128");
static_assert(offsetof(PGMDEV_HPS_STRUCTURE, qspi) == 160 * sizeof(DWORD),
              "quad-SPI group at word 160");
static_assert(offsetof(PGMDEV_HPS_STRUCTURE, nand) == 216 * sizeof(DWORD),
              "NAND group at word 216");
static_assert(offsetof(PGMDEV_HPS_STRUCTURE, sdmmc) == 272 * sizeof(DWORD),
              "SD/MMC group at word 272");
static_assert(offsetof(PGMDEV_HPS_STRUCTURE, watchdog) == 304 * sizeof(DWORD),
              "watchdog group at word 304");
static_assert(offsetof(PGMDEV_HPS_STRUCTURE, boot) == 312 * sizeof(DWORD),
              "boot group at word 312");
static_assert(offsetof(PGMDEV_HPS_STRUCTURE, reserved) == 324 * sizeof(DWORD),
              "reserved words at 324");
