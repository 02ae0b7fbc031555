// Why no loaded flash record answers an identifier: gated records and what their switches mean,
// chips left out of the table on purpose, and the makers that manufacturer bytes name.
#include <algorithm>
#include <cstdio>
#include <string>

#include "base/pgmdev_hex.h"
#include "flash/pgmdev_flash_match.h"
#include "pgm_text.h"
#include "pgmdev_flash_manager.h"
#include "pgmdev_sfdp.h"

namespace {

struct GATE {
  const char* word;
  const char* meaning;
};

// The switches the shipped table uses (data/make_flash_csv.py, GATES), and when to turn each on.
const GATE GATES[] = {
    {"SECTOR_64K",
     "for the 64 KB-sector variant (fifth identifier byte 01): the 256 KB-sector variant answers "
     "the same three bytes, no sector size serves both, and it needs a user flash definition "
     "(doc/flash_database.md, Shared identifiers)"},
    {"UNVERIFIED",
     "after checking the record against the chip's datasheet: a fact of it (die count, voltage or "
     "protection) is not confirmed by two public sources (doc/flash_database.md, Provenance)"},
    {"DIE_SELECT",
     "where the programmer selects the stacked dies itself (command C2h): the record's flows do "
     "not"},
};

struct REFUSED {
  BYTE id[3];
  const char* chip;
  const char* reason;
};

// Chips left out of the shipped table on purpose (doc/flash_database.md, Chips left out).
const char* const EVERSPIN_REASON =
    "an MRAM behind a SPI NOR command set, without an SFDP table, whose identifier stands in one "
    "public chip table only (openFPGALoader), so neither size nor erase layout is confirmed twice";
const char* const ONE_TABLE_REASON =
    "its identifier stands in one public chip table only (openFPGALoader), so its size is not "
    "confirmed twice";
const REFUSED REFUSED_CHIPS[] = {
    {{0x6B, 0xBB, 0x14}, "Everspin EM008LX", EVERSPIN_REASON},
    {{0x6B, 0xBB, 0x15}, "Everspin EM016LX", EVERSPIN_REASON},
    {{0x6B, 0xBB, 0x16}, "Everspin EM032LX", EVERSPIN_REASON},
    {{0x6B, 0xBB, 0x17}, "Everspin EM064LX", EVERSPIN_REASON},
    {{0xBA, 0x60, 0x15}, "Zetta ZD25WQ16C", ONE_TABLE_REASON},
};

// JEDEC JEP106 bank 1, by code without its parity bit (1 to 126).
const char* const BANK1[126] = {"AMD",
                                "AMI",
                                "Fairchild",
                                "Fujitsu",
                                "GTE",
                                "Harris",
                                "Hitachi",
                                "Inmos",
                                "Intel",
                                "I.T.T.",
                                "Intersil",
                                "Monolithic Memories",
                                "Mostek",
                                "Freescale (Motorola)",
                                "National",
                                "NEC",
                                "RCA",
                                "Raytheon",
                                "Conexant (Rockwell)",
                                "Seeq",
                                "NXP (Philips)",
                                "Synertek",
                                "Texas Instruments",
                                "Toshiba",
                                "Xicor",
                                "Zilog",
                                "Eurotechnique",
                                "Mitsubishi",
                                "Lucent (AT&T)",
                                "Exel",
                                "Atmel",
                                "STMicroelectronics",
                                "Lattice Semiconductor",
                                "NCR",
                                "Wafer Scale Integration",
                                "IBM",
                                "Tristar",
                                "Visic",
                                "International CMOS Technology",
                                "SSSI",
                                "Microchip Technology",
                                "Ricoh",
                                "VLSI",
                                "Micron Technology",
                                "SK Hynix",
                                "OKI Semiconductor",
                                "Actel",
                                "Sharp",
                                "Catalyst",
                                "Panasonic",
                                "IDT",
                                "Cypress",
                                "DEC",
                                "LSI Logic",
                                "Zarlink (Plessey)",
                                "UTMC",
                                "Thinking Machine",
                                "Thomson CSF",
                                "Integrated CMOS (Vertex)",
                                "Honeywell",
                                "Tektronix",
                                "Oracle",
                                "Silicon Storage Technology",
                                "ProMos/Mosel Vitelic",
                                "Infineon (Siemens)",
                                "Macronix",
                                "Xerox",
                                "Plus Logic",
                                "Western Digital",
                                "Elan Circuit Tech.",
                                "European Silicon Str.",
                                "Apple Computer",
                                "Xilinx",
                                "Compaq",
                                "Protocol Engines",
                                "SCI",
                                "Seiko Instruments",
                                "Samsung",
                                "I3 Design System",
                                "Klic",
                                "Crosspoint Solutions",
                                "Alliance Semiconductor",
                                "Tandem",
                                "Hewlett-Packard",
                                "Integrated Silicon Solutions",
                                "Brooktree",
                                "New Media",
                                "MHS Electronic",
                                "Performance Semi.",
                                "Winbond Electronic",
                                "Kawasaki Steel",
                                "Bright Micro",
                                "TECMAR",
                                "Exar",
                                "PCMCIA",
                                "LG Semi (Goldstar)",
                                "Northern Telecom",
                                "Sanyo",
                                "Array Microsystems",
                                "Crystal Semiconductor",
                                "Analog Devices",
                                "PMC-Sierra",
                                "Asparix",
                                "Convex Computer",
                                "Quality Semiconductor",
                                "Nimbus Technology",
                                "Transwitch",
                                "Micronas (ITT Intermetall)",
                                "Cannon",
                                "Altera",
                                "NEXCOM",
                                "Qualcomm",
                                "Sony",
                                "Cray Research",
                                "AMS (Austria Micro)",
                                "Vitesse",
                                "Aster Electronics",
                                "Bay Networks (Synoptic)",
                                "Zentrum/ZMD",
                                "TRW",
                                "Thesys",
                                "Solbourne Computer",
                                "Allied-Signal",
                                "Dialog Semiconductor",
                                "Media Vision",
                                "Numonyx"};

using pgmdev::hex_bytes;

}  // namespace

std::string PGMDEV_FLASH_MANAGER::gate_meaning(const std::string& word) {
  for (const GATE& gate : GATES) {
    if (gen_stricmp(word.c_str(), gate.word) == 0) return gate.meaning;
  }
  return "";
}

std::string PGMDEV_FLASH_MANAGER::maker_of(BYTE manufacturer) {
  if (const char* flash_maker = PGMDEV_SFDP_DEFINITION::manufacturer_of(manufacturer)) {
    return flash_maker;
  }
  const BYTE code = manufacturer & 0x7F;
  if (!PGMDEV_SFDP_DEFINITION::has_odd_parity(manufacturer) || code == 0 || code == 0x7F) {
    return "";
  }
  return BANK1[code - 1];
}

PGMDEV_FLASH_ID_EXPLANATION PGMDEV_FLASH_MANAGER::explain_unanswered_id(bool by_silicon_id,
                                                                        const BYTE* id) const {
  PGMDEV_FLASH_ID_EXPLANATION answer;
  const std::string bytes = by_silicon_id ? hex_bytes(id, 1) : hex_bytes(id, FLASH_ID_SIZE);
  std::string& text = answer.text;
  for (const PGMDEV_SFL_FLASH_INFO& record : get_gated_flash_database()) {
    const bool answers = by_silicon_id ? pgmdev::answers_silicon_id(record, id)
                                       : pgmdev::answers_device_id(record, id);
    if (!answers) continue;
    PGMDEV_FLASH_ID_EXPLANATION::GATED gated{record.device_name, "PGM_ALLOW_" + record.ini,
                                             gate_meaning(record.ini)};
    text += (text.empty() ? "" : "; ") + gated.device_name + " answers " + bytes + " when " +
            gated.switch_name + " is on" +
            (gated.meaning.empty() ? "" : ": set it only " + gated.meaning);
    answer.gated.push_back(std::move(gated));
  }
  if (by_silicon_id) {
    if (text.empty()) text = "no record answers silicon ID " + bytes;
    return answer;
  }
  for (const REFUSED& refused : REFUSED_CHIPS) {
    if (std::equal(refused.id, refused.id + FLASH_ID_SIZE, id)) {
      answer.refused_chip = refused.chip;
      answer.refused_reason = refused.reason;
      text += (text.empty() ? "" : "; ") + std::string(refused.chip) + " answers " + bytes +
              " but is left out of the table on purpose: " + refused.reason +
              "; define it as a user flash ('pgmdev flash define')";
    }
  }
  answer.maker = maker_of(id[0]);
  if (!text.empty()) return answer;
  if ((id[0] == 0x00 || id[0] == 0xFF) && id[1] == id[0] && id[2] == id[0]) {
    text = "the read-out " + bytes + " is what an empty bus gives: no chip answered";
  } else if (answer.maker.empty()) {
    text = "no chip the table knows answers " + bytes + ", and its first byte " + hex_bytes(id, 1) +
           " is no JEDEC manufacturer code: check the wiring and the order of the bytes";
  } else {
    // Flash makers answer some codes that JEDEC gave others (Winbond's EF); their flash names
    // come first.
    const bool flash_name = PGMDEV_SFDP_DEFINITION::manufacturer_of(id[0]) != nullptr;
    text = "no chip the table knows answers " + bytes + "; its first byte " + hex_bytes(id, 1) +
           " names " + answer.maker +
           (flash_name ? " (as public flash tables name it)" : " (JEDEC bank 1)") +
           "; define the chip from its own SFDP table with 'pgmdev flash define "
           "--sfdp DUMP --id " +
           hex_bytes(id, 1) + hex_bytes(id + 1, 1) + hex_bytes(id + 2, 1) + "'";
  }
  return answer;
}
