// Name tables built when the library loads: the four PGM_ENUM_TYPE vocabularies and the
// other constant name tables of the device layer.
#pragma once

#include <iterator>
#include <string>

#include "pgm_types.h"
#include "pgmdev_hps_mgr.h"

// ---- Vocabularies of PGM_ENUM_TYPE (index = enumeration value; index 0 means "none") ----

// Vocabulary 0: routing and block resource names.
inline const std::string PGM_ENUM_RESOURCE_NAMES[] = {
    "",
    "CC_CS_0",
    "CC_CS_1",
    "CC_CS_2",
    "CC_CS_3",
    "CC_CS_4",
    "CC_CS_5",
    "CC_CS_6",
    "CC_CS_VIO",
    "DS_DSP",
    "RT_DSPL",
    "RT_DSPR",
    "LA_LAB",
    "LA_MLAB",
    "RT_LABL",
    "RT_LABR",
    "RT_MLABL",
    "RT_MLABR",
    "MM_M20K",
    "MM_M10K",
    "RT_M20KL",
    "RT_M20KR",
    "RT_M10KL",
    "RT_M10KR",
    "RT_BUFL",
    "RT_BUFL_AND_BCAP",
    "RT_BUFL_AND_TCAP",
    "RT_BCAP_HIP_HIOL",
    "RT_BCAP_HIP_HIOR",
    "RT_BCAP_MLABX_ALL",
    "RT_TCAP_HIP_HIOL",
    "RT_TCAP_HIP_HIOR",
    "RT_TCAP_LAB_HIOR_HHP",
    "RT_TCAP_MLABX_ALL",
    "RT_BUFLC",
    "RT_BUFRC",
    "RT_BUFR",
    "RT_HIOL",
    "RT_HIOR",
    "RT_HIOR_HIP",
    "RT_VIO_DSP",
    "RT_VIO_LAB",
    "RT_VIO_LAB_PM",
    "RT_VIO_MLAB",
    "RT_VIO_M_LAB",
    "RT_VIO_M20K",
    "RT_VIO_M10K",
    "BF_LEFT_IO_AUX",
    "BF_RIGHT_IO_AUX",
    "CC_TS_22BUF",
    "CC_TS_22BUF_RED",
    "CC_TS_BASE",
    "CC_TS_BASE_B_0",
    "CC_TS_BASE_B_1",
    "CC_TS_BASE_B_2",
    "CC_TS_BASE_T_0",
    "CC_TS_BASE_T_1",
    "CC_TS_BASE_T_2",
    "CC_TS_SCLKMUX_0",
    "CC_TS_SCLKMUX_1",
    "CC_TS_SCLKMUX_2",
    "CC_TS_SCLKMUX_3",
    "CC_TS_SCLKMUX_4",
    "CC_TS_SCLKMUX_5",
    "CC_TS_SCLKMUX_6",
    "CC_TS_SCLKMUX_7",
    "RT_HIOL_BOT_ALIGN",
    "RT_HIOL_CORE",
    "RT_HIOL_TOP_ALIGN",
    "RT_HIOR_BOT_ALIGN",
    "RT_HIOR_CORE",
    "RT_HIOR_TOP_ALIGN",
    "RT_LABL_SHARED",
    "RT_M20KL_DSPL",
    "RT_M20KR_LABR",
    "TR_S4_AR",
};

// Vocabulary 1: flash sector names.
inline const std::string PGM_ENUM_FLASH_SECTOR_NAMES[] = {
    "", "UFM1", "UFM0", "CFM2", "CFM1", "CFM0", "DSM", "MFM", "DONE_BITS",
};

// Vocabulary 2: option bit names; RESERVED<n> sits at index n.
inline const std::string PGM_ENUM_OPTION_BIT_NAMES[] = {
    "",
    "RESERVED1",
    "RESERVED2",
    "RESERVED3",
    "RESERVED4",
    "RESERVED5",
    "RESERVED6",
    "RESERVED7",
    "RESERVED8",
    "RESERVED9",
    "RESERVED10",
    "RESERVED11",
    "RESERVED12",
    "RESERVED13",
    "RESERVED14",
    "RESERVED15",
    "RESERVED16",
    "RESERVED17",
    "RESERVED18",
    "RESERVED19",
    "RESERVED20",
    "AES_KEYS",
    "FALLBACK_ADDR",
    "EPOF_ONLY",
    "TEST_DISABLE",
    "JTAG_SECURITY",
    "SPI_NSDM",
    "PROGRAM_DONE",
    "KEY_PROGRAM_SUCCESS",
    "ICB_PROGRAM_SUCCESS",
    "VERIFY_PROTECT",
    "TEST_ENABLE",
    "WD_TIMEOUT_VALUE",
    "UWEN",
    "FORCE_SSMCLK_TO_ISMCLK",
    "FALLBACK",
    "CFM_ADD",
    "CFM_X2",
    "DELAY_ON",
    "POR_DLY",
    "WP_EN",
    "WP_EN_SPI",
    "CISCO_RU",
};

// Vocabulary 3: HPS configuration order, SOF file error and HPS DAP split mode names.
inline const std::string PGM_ENUM_HPS_NAMES[] = {
    "",
    "HPS_CONFIG_ORDER_HPS_FIRST",
    "HPS_CONFIG_ORDER_HPS_AFTER_INIT_DONE",
    "HPS_CONFIG_ORDER_HPS_BY_FPGA",
    "SOF_FILE_ERROR_POF_ERROR",
    "SOF_FILE_ERROR_INCOMPLETE_POWER_MANAGEMENT",
    "SOF_FILE_ERROR_INCOMPLETE_HPS_HANDOFF",
    "SOF_FILE_ERROR_INCOMPLETE_HPS_BOOTLOADER",
    "SOF_FILE_ERROR_NOT_SUPPORTED",
    "SOF_FILE_ERROR_NOT_ENABLED",
    "SOF_FILE_ERROR_PRSEC_ERROR",
    "SOF_FILE_ERROR_REV4",
    "SOF_FILE_ERROR_REV5",
    "SOF_FILE_ERROR_REV6",
    "SOF_FILE_ERROR_REV7",
    "SOF_FILE_ERROR_REV8",
    "SOF_FILE_ERROR_REV9",
    "SOF_FILE_ERROR_REV10",
    "HPS_DAP_SPLIT_MODE_DISABLED",
    "HPS_DAP_SPLIT_MODE_USE_SDM_PINS",
    "HPS_DAP_SPLIT_MODE_USE_HPS_PINS",
};

// One descriptor per PGM_ENUM_TYPE value: the entry count and the entries.
struct PGM_ENUM_TYPE_DESCRIPTOR {
  DWORD m_count;
  const std::string* m_names;
};

inline const PGM_ENUM_TYPE_DESCRIPTOR PGM_ENUM_TYPE_TABLE[] = {
    {DWORD(std::size(PGM_ENUM_RESOURCE_NAMES)), PGM_ENUM_RESOURCE_NAMES},
    {DWORD(std::size(PGM_ENUM_FLASH_SECTOR_NAMES)), PGM_ENUM_FLASH_SECTOR_NAMES},
    {DWORD(std::size(PGM_ENUM_OPTION_BIT_NAMES)), PGM_ENUM_OPTION_BIT_NAMES},
    {DWORD(std::size(PGM_ENUM_HPS_NAMES)), PGM_ENUM_HPS_NAMES},
};

// ---- Other name tables of the device layer (not read by the naming operations) ----

// A message stored encoded: two or three encoded texts, a number and a category word.
struct PGMDEV_ENCODED_MESSAGE {
  const char* m_texts[3];
  DWORD m_number;
  const char* m_category;
};

// MD5 digests of the source tables this build generated its database files from.
#if __has_include("pgmdev_build_config.h")
#include "pgmdev_build_config.h"
inline const std::string PGMDEV_STATIC_SOURCE_DIGESTS[] = {PGMDEV_DEV_INFO_CSV_MD5_TEXT,
                                                           PGMDEV_FLASH_INFO_CSV_MD5_TEXT};
#endif

// Names of the serial flash database and the two HPS flash lists.
inline const std::string PGMDEV_STATIC_DATABASE_KIND_NAMES[] = {
    "SFL FLASH",
    "HPS SPI",
    "HPS NAND",
};

// Encoded message records, group 1 (3).
inline const PGMDEV_ENCODED_MESSAGE PGMDEV_STATIC_ENCODED_MESSAGES_1[] = {
    {{"RJ000Wdsv3kuutdsDNe2KBlk@", "J000Wds31bBJwNjC-FRWnYNlx9dwY3c3oHRS"},
     0xFE391234u,
     "KALIX_II"},
    {{"8A000WdssT-dVypE2UasYMFquvQz2E6ueAw2R", "h60000Wds77sjC5MdEI@"}, 0x5799F979u, "BITASM"},
    {{"Dv000Wds8bMFhV3mIp8w4UBaS", "gN0000WdsELLLAeiLsGF8E5C2hcPNTKY"}, 0x62B357EBu, "PGMIO"},
};

// Encoded message records, group 2 (3).
inline const PGMDEV_ENCODED_MESSAGE PGMDEV_STATIC_ENCODED_MESSAGES_2[] = {
    {{"20000WdsvReZJQINWiUia6aGKIt", "Bx000WdshLFGkRshNGZ2d7Yba"}, 0x76333522u, "EMAIL"},
    {{"p0000WdsZAFwQQptAF", "E000WdsTy5aCeqB3G0PG6yy"}, 0xC88F4103u, "BITASM"},
    {{"EG000WdsrXL1X@4geffnKOIUWVOEN", "w0000WdsnE4aSV9g1MwT5LMvWtsuDFq4V"}, 0xDAFDDD4Fu, "PFG"},
};

// Encoded message records, group 3 (11).
inline const PGMDEV_ENCODED_MESSAGE PGMDEV_STATIC_ENCODED_MESSAGES_3[] = {
    {{"d0000Wdssylo8aQg77gMHNP", "aX0000WdsUK-VIX13A6zXT3Fe1Hw0VyhYV",
      "mJ000WdsIUe6hNJBR0f7sI6784OhekJOhcnN"},
     0x6821F7F5u,
     "EMAIL"},
    {{"Pd000WdsfoR1-blnI2T3MKFbwFr", "p0000WdsZcBseSvACTPXd5jhvTNOUMG2iBm1"}, 0xE8181886u, "PFG"},
    {{"p60000WdsRTTRKYHZbExer", "pZ000WdsLRzKwy3p2WK5"}, 0xB1EB6153u, "FID"},
    {{"Bu0000WdsBWzc2EKv7sgdfZ0hjC", "QX0000WdsvvZjyrhcwSa1AZ7LNEgCBOF@LaDh"},
     0x6BAEC94Au,
     "BITASM"},
    {{"X50000WdsuUsYRDgGMD2cx", "Ur000WdsmfKvX0QMfmBKdGhIGucrauYSTp"}, 0x18F07012u, "ENCRYPTION"},
    {{"F0000WdszW@VZ7pTvcsZCuGZn1tBphxzZY", "0a000WdsHmietFIDOG@4vZiAuF2mn5sK",
      "QF000WdsF76qfGUejmiwW"},
     0x1D8605DDu,
     "PGM"},
    {{"V0000WdsWS5dZ8suYKZFkGZG-", "AX000WdsWDEDIby0A7kwZ", "eA0000Wdsj14e35PuQL"},
     0x08BE3C02u,
     "ZORQA_I"},
    {{"Su000WdsupPpSytnnj-Ct7hyGRWhgwUM5AJp", "fX000WdsT@7Ap2TXrenxB"}, 0xAF7B2455u, "ENCRYPTION"},
    {{"60000WdsBXosFJSywRSEu9hbEiAm", "l000Wds4IUd94g@lwCyNBm1N",
      "tu0000WdsUSD4f7LjxyxE09CyZ3pMQ8-d9n"},
     0x1EF1B6D9u,
     "BITASM"},
    {{"L0000Wdsxz5APqh@7j-mlxnh31Id4", "7000WdshNICVRSG8f4IvKVOm32uqMnEF2u"},
     0x328C14AAu,
     "ZORQA_I"},
    {{"O0000Wdsj38iR6kxSex6oEcv1q1PhoGpSIxa", "KQ000Wdsomjp6gph6lOUPyBY", "k000Wds-Lm7xRg7va"},
     0x9F31026Cu,
     "KALIX_II"},
};

// Encoded message records, group 4 (10).
inline const PGMDEV_ENCODED_MESSAGE PGMDEV_STATIC_ENCODED_MESSAGES_4[] = {
    {{"50000Wds8g7MDTMa@I0-yzyJO-M", "7c0000Wds@VH7ReRypTaJ"}, 0xA6FECE47u, "ZORQA_I"},
    {{"m0000WdsQjsuun2DnDPCMfCHcFbvyS3aJg5p", "y000WdsVYmWg8etMSMgJHByF9r2vdLUgotj"},
     0x1D238A69u,
     "EMAIL"},
    {{"W40000WdsPs1AhQI6jGkPlVSiRWa4LI71cM", "HI000WdsoQqt6dX-j8w95dJgZP"}, 0x995B1CC0u, "EMAIL"},
    {{"b0000WdsIOBYVjvKOXI3D5Tj6", "Ru000Wds@myeV-AeF0JiZX6"}, 0x0864FAFFu, "EMAIL"},
    {{"X000WdsoyMuyya2SJ@VOL", "On0000Wdsp-2EuFGIzi2"}, 0xB73ABEFAu, "FID"},
    {{"Yy000WdscwVXyEO-LMoKJjt8UhQqnJC@Y", "C0000Wds@WauNdiGrA2e"}, 0x91960B3Fu, "EMAIL"},
    {{"W0000WdsCnKBdEDHp96Pu8OskZTv4e1BUL", "fV0000Wds-P4C1ApXiMj8BBd"}, 0x56DFEEB6u, "PGMIO"},
    {{"i0000WdsHkhi23yqMkMVv", "TA000Wds8rLkKV35cKGu7L"}, 0x9CCE3070u, "EMAIL"},
    {{"w0000Wdslgc2QdbYjRg0X", "WD000WdsS@LgNsYHHg17"}, 0x9F26A9ACu, "EMAIL"},
    {{"9J000WdsmNnyn0JuTEnFXBAWX5CI55", "ij000WdstbPfZh2RF7SI6MVf7nGu9D"}, 0x806F0728u, "BITASM"},
};

// Encoded message records, group 5 (20).
inline const PGMDEV_ENCODED_MESSAGE PGMDEV_STATIC_ENCODED_MESSAGES_5[] = {
    {{"by000Wdsq3H4gzbtfPoXnrhDrOXZtLsFobPLl", "0000Wds221n4G-kBm"}, 0x6B25C864u, "PFG"},
    {{"LS0000WdsDqszO7ijmXOl6t", "Y000WdsnjswxEa6ZpmBdF"}, 0xCF0B8259u, "FBGEN"},
    {{"H000Wdsvh4d7F68TuJWGpQEk780", "Q000WdsIl626AVQ2H"}, 0x344156F1u, "ENCRYPTION"},
    {{"gt0000Wdshl50p56T7fduN2MVm", "l000WdsuQ5AVupmdVlM"}, 0xD80FBED6u, "EMAIL"},
    {{"YF000Wds5mzgiJFy8-@v-QOISG", "Cj0000WdsQ3Bh8b88mhg"}, 0xB87C6007u, "KALIX_II"},
    {{"t0000WdsBZYnBJznlG", "la0000WdslxcxpzUgeWj"}, 0x897C9A0Du, "FBGEN"},
    {{"U000WdscIp4Ppcr-znzKL8LZRa", "t0000WdsGwYDOfEDf1auvgERcz5UG"}, 0x4161F0C8u, "PGMIO"},
    {{"bZ000WdsQL5KFBwKpD9csdS5I0nF", "M000Wdse4Aqo4NKp0O85s-jkKP"}, 0xF6152CB9u, "ZORQA_I"},
    {{"ah0000WdsZUvZNFis-SdkLF7Rgs-mDcKEC", "L6000WdsPAwLhk2QZEAAFYCLbF"}, 0x55989BA1u, "EMAIL"},
    {{"KC0000WdseR3QWlCL@K62IAYIBBnk1@oai8", "J000Wdsy0ZEUqyCTQOu2TAc15Ws7B"},
     0xCEA2FBF1u,
     "FBGEN"},
    {{"580000WdsfVO16ahJlcd04Niz-8CzYs16P8d", "Fv000Wdsa1ck-GUIqQI"}, 0xD69DF472u, "PGMIO"},
    {{"e0000WdsfyZPL2Szqnm2exW", "5w0000WdsQAY8ZmYvSiQnrU51IA", "U000Wdsk-OEnB0KKHPHctBDAiAs"},
     0xC09C8673u,
     "PGM"},
    {{"Fa000WdspW@Ql9kb6SkwX", "410000Wds3KET5nU5ydCYuQadid"}, 0xBAA9B25Au, "PGM"},
    {{"00000Wdst@4VrcnCXf0gqpCFQZ@B@znmlj", "GG000WdsJypGeIOCt8r2"}, 0x00728DCCu, "KALIX_II"},
    {{"z0000Wds04hyMveG@kj6V1Kkf-iFx", "gm0000WdsbtIZnF8zc6cxI4AU5yrLKsfOCrk"},
     0xC80530D6u,
     "BITASM"},
    {{"30000WdsUNj5z69K2dYtd", "q000Wds2WEfi@hG5X9982"}, 0x3E8DE49Bu, "FID"},
    {{"p000Wds@jYmJEIT4vlOWLlXeAyw", "10000WdsL3QADqm0UJoXxcnp2fJA", "K4000Wds45DjQ4@c4vs"},
     0x6899C2C6u,
     "EMAIL"},
    {{"Y000WdsUEIL2TJA9Jq3g0j9HkxZb0", "S000WdsE4PfrAE7ACo0f1KSqDOSdGw"}, 0xCEA0012Du, "ZORQA_I"},
    {{"bJ000WdsFAwRxgX9Tgflm75NI-B1RO5", "Z0000WdsJuPa0vxlbXrUfDmr"}, 0x8FDA189Bu, "ZORQA_I"},
    {{"x0000WdsLxy7g0pYG7ravOfrDXfr", "n7000WdsVQkNCnczhpxmylVy4WBNbhHx"},
     0x45FD30D7u,
     "ENCRYPTION"},
};

// Encoded message records, group 6 (6).
inline const PGMDEV_ENCODED_MESSAGE PGMDEV_STATIC_ENCODED_MESSAGES_6[] = {
    {{"R000Wds4JVTYA3h-rHPEhAUv", "j70000WdsvBviitwwcYYRDF"}, 0x470995A2u, "FBGEN"},
    {{"y0000Wdsm4AYJZSPyFI6EGtzug0IEEwxg", "u000WdsX3-L2cscPadNvTJfGT5"}, 0x0847C96Cu, "PFG"},
    {{"Qg0000WdsGMG2G5RvDE6PVfuS5olyIXmG", "30000WdsRavT4kQssk4FtD6FO5xaM"},
     0x5CA9F01Bu,
     "KALIX_II"},
    {{"mN000WdsprcifBzZnhItUE@9nVRjlLK", "u000Wdsa396czVTy6poraeE"}, 0x66B1A051u, "PFG"},
    {{"QS000WdsyBinDeetroTjfvGAl", "S000WdsImvUa8fg2wPlmpaw71BdEaD3w7"}, 0x36737A3Au, "PFG"},
    {{"N0000WdsdlBGnNRw6YVuc1vu", "8000WdsE8@kvuknIqe0F"}, 0x2992722Du, "PGM"},
};

// Encoded message records, group 7 (14).
inline const PGMDEV_ENCODED_MESSAGE PGMDEV_STATIC_ENCODED_MESSAGES_7[] = {
    {{"1000WdsamfqD-PH8k@GZ5u8QGzw5G@zcqCP2", "b000WdsMMq94eSehY"}, 0x6984BE36u, "ENCRYPTION"},
    {{"rE000Wdsxf1lBbQ2zTh", "Y000WdsZhsybfff@L3jpDKqzMR"}, 0x149A3280u, "ZORQA_I"},
    {{"dV0000WdsDjg2HGs6QWCN4KTq", "r000WdseGka3LTyPC6"}, 0x05898F3Eu, "EMAIL"},
    {{"00000Wdsi3uqRpAD17-TlqlJNgno72g2", "Nh0000WdsGLyE9UggRR1s-NyIYgQ"}, 0xDF1A85F1u, "PGM"},
    {{"Aw000Wdsrm9p9NDEsOZg6RgdgjRax", "680000Wdsf50xP-ySDr4WXz6"}, 0x488B7CC3u, "PGMIO"},
    {{"fL0000Wds-9URY1Bx30wX", "X000WdslAotBxdky12"}, 0x5D413A0Fu, "BITASM"},
    {{"Kn000WdsO4gR8qhyjOnfs2xQDMzC9fphSG", "C000Wdsx@cBS9m5oRvNBy"}, 0x67F3D239u, "PFG"},
    {{"d0000WdsCFFapDztYgzV", "N000WdspzSvJsZs2BOuEN6j4bN13F"}, 0x8EDCA3C7u, "PGM"},
    {{"7H0000Wds6VAruWHjWODIIt0", "ar000Wds8xBZTup7iF4qY"}, 0xAB1274B4u, "FID"},
    {{"K0000WdsT9iPadWuCqX6", "d70000WdsuVKziu51WsZOtIZSETZa7932b3kPw"}, 0x7070091Bu, "ZORQA_I"},
    {{"wi000Wds5uM8nWHZftwnov2SWWb5si", "30000Wds8uSamBIXFiSCbSv6RZiGomLs",
      "My000WdsBxK0rtOthFECObw-L7G"},
     0xE6848684u,
     "EMAIL"},
    {{"S000Wds2Ri5UD22hJR", "8H0000Wds2m4D9NUAcWr75Kb9wp"}, 0x6AE9F9B2u, "BITASM"},
    {{"XM000Wdsk0oHMmOjaA", "bb000WdsNyxzUup@yTo7nRxah"}, 0xB95CBE9Cu, "PFG"},
    {{"d000Wds2Ne4YpfaepQD21kNXIfSdit", "T000WdsoY17t-B@qkBWzYC9u1yo7E7T"},
     0xD5CF7AC2u,
     "ENCRYPTION"},
};

// Keys of a user NAND flash definition, in field order.
inline const std::string (&PGMDEV_STATIC_HPS_NAND_KEYS)[PGMDEV_HPS_NAND_PARAM_COUNT] =
    PGMDEV_HPS_NAND_PARAM_KEYS;

// Prompts shown when a user defines an HPS SPI flash, in field order: the HPS list's own.
inline const std::string (&PGMDEV_STATIC_HPS_SPI_PROMPTS)[PGMDEV_HPS_SPI_PARAM_COUNT] =
    PGMDEV_HPS_SPI_PARAM_LABELS;

// Flash vendor words, then flash type names.
inline const std::string PGMDEV_STATIC_FLASH_VENDOR_TYPE_NAMES[] = {
    "MICRON", "SPANSION", "MACRONIX", "GIGADEVICE", "WINBOND",  "ISSI",      "SPI_16",
    "SPI_32", "SPI_64",   "QSPI_128", "QSPI_256",   "QSPI_512", "QSPI_1024",
};

// Device information names: dev info section names (54).
inline const std::string PGMDEV_STATIC_DEV_INFO_SECTION_NAMES[] = {
    "ARRAY_ADDRESS_MAP",   "ACTION_HDR",         "ACTION_SIZE_START",   "FLASH_DATA_HDR",
    "PAD_REGION_TYPE",     "JTAG_ERASE_VALUE",   "CONFIG_MODE_LIMIT",   "CHAIN_MODE_TABLE",
    "JTAG_ID_LIST",        "FLASH_STEP_LIMIT",   "PAD_DATA_LIMIT",      "POWER_MODE_HDR",
    "USER_MODE_TABLE",     "SECTOR_ID_HDR",      "SECTOR_BYTE_LIST",    "KEY_ADDRESS_HDR",
    "FUSE_SIZE_END",       "STATUS_PAGE_INFO",   "VERIFY_SIZE_START",   "ARRAY_CLOCK_START",
    "VERIFY_MODE_HDR",     "VERIFY_STEP_FLAGS",  "PAD_ADDRESS_END",     "VERIFY_DATA_LIMIT",
    "SECTOR_SIZE_INFO",    "STATUS_COUNT_TYPE",  "JTAG_STEP_HDR",       "KEY_ROW_TYPE",
    "FLASH_ERASE_TYPE",    "FUSE_DATA_HDR",      "VERIFY_WORD_START",   "POWER_OFFSET_HDR",
    "ACTION_ERASE_LIST",   "JTAG_ERASE_TABLE",   "SECURITY_FRAME_MASK", "BLOCK_FRAME_TYPE",
    "JTAG_COUNT_FLAGS",    "SECURITY_DATA_MASK", "VERIFY_ADDRESS_TYPE", "CHAIN_BYTE_MAP",
    "JTAG_ADDRESS_TABLE",  "CHAIN_ID_INFO",      "CONFIG_OFFSET_LIST",  "JTAG_FRAME_INFO",
    "JTAG_DATA_MASK",      "PAD_CLOCK_TABLE",    "VERIFY_ROW_START",    "CHAIN_DATA_VALUE",
    "ACTION_STEP_START",   "STATUS_FRAME_INFO",  "KEY_STEP_LIMIT",      "BLOCK_ROW_MASK",
    "OPTION_REGION_VALUE", "JTAG_SIZE_INFO",
};

// Device information names: dev info header field names (94).
inline const std::string PGMDEV_STATIC_DEV_INFO_HEADER_FIELD_NAMES[] = {
    "USER_BIT_START",      "ACTION_ADDRESS_MAP",   "PROGRAM_BYTE_HDR",     "DEVICE_ID_FLAGS",
    "KEY_ROW_MASK",        "DEVICE_SIZE_END",      "CONFIG_COUNT_START",   "BLOCK_CLOCK_END",
    "FLASH_FRAME_LIST",    "POWER_DELAY_TABLE",    "SECURITY_ID_LIMIT",    "OPTION_ROW_FLAGS",
    "ARRAY_WORD_MASK",     "SECURITY_CLOCK_MASK",  "ARRAY_PAGE_TYPE",      "ACTION_WORD_VALUE",
    "TIMING_ROW_HDR",      "CONFIG_STEP_INFO",     "FUSE_ID_FLAGS",        "STATUS_ROW_FLAGS",
    "OPTION_REGION_MASK",  "POWER_ERASE_TABLE",    "CHAIN_ERASE_LIST",     "PROGRAM_FRAME_HDR",
    "FLASH_WORD_LIMIT",    "TIMING_REGION_FLAGS",  "ARRAY_BIT_MASK",       "BLOCK_OFFSET_HDR",
    "STATUS_BIT_INFO",     "SECTOR_OFFSET_TABLE",  "FLASH_DELAY_VALUE",    "DEVICE_ERASE_VALUE",
    "PROGRAM_DATA_MASK",   "CHAIN_FRAME_TYPE",     "ARRAY_FRAME_LIMIT",    "CONFIG_STEP_FLAGS",
    "PROGRAM_MODE_END",    "SECURITY_ERASE_VALUE", "ARRAY_PAGE_HDR",       "FUSE_ID_LIMIT",
    "DEVICE_BYTE_END",     "JTAG_ROW_INFO",        "USER_REGION_TABLE",    "STATUS_FRAME_TYPE",
    "KEY_REGION_MASK",     "BLOCK_BIT_FLAGS",      "TIMING_OFFSET_LIST",   "ARRAY_MODE_MAP",
    "CHAIN_ROW_START",     "OPTION_PAGE_LIST",     "CONFIG_REGION_LIMIT",  "CONFIG_STEP_TYPE",
    "ARRAY_DATA_MASK",     "DEVICE_DATA_LIST",     "SECURITY_COUNT_VALUE", "KEY_BIT_MASK",
    "FLASH_COUNT_MASK",    "USER_ERASE_MASK",      "PAD_ADDRESS_TABLE",    "PAD_MODE_MAP",
    "STATUS_SIZE_MAP",     "DEVICE_BYTE_MAP",      "CHAIN_COUNT_HDR",      "SECURITY_REGION_MAP",
    "CONFIG_ERASE_HDR",    "FLASH_PAGE_LIST",      "BLOCK_PAGE_LIMIT",     "USER_ROW_FLAGS",
    "DEVICE_FRAME_MASK",   "PAD_ADDRESS_LIMIT",    "TIMING_PAGE_START",    "VERIFY_PAGE_VALUE",
    "DEVICE_REGION_LIMIT", "PAD_DATA_MAP",         "ARRAY_WORD_HDR",       "ACTION_COUNT_MASK",
    "ARRAY_FRAME_END",     "USER_REGION_LIMIT",    "CONFIG_BYTE_LIMIT",    "USER_BYTE_START",
    "ACTION_STEP_TYPE",    "FUSE_ADDRESS_LIMIT",   "CONFIG_SIZE_END",      "ACTION_ADDRESS_INFO",
    "ARRAY_CLOCK_VALUE",   "OPTION_MODE_VALUE",    "STATUS_COUNT_LIMIT",   "USER_BIT_HDR",
    "FLASH_BIT_HDR",       "FUSE_WORD_FLAGS",      "PROGRAM_ID_HDR",       "POWER_DATA_LIST",
    "OPTION_ROW_END",      "VERIFY_ID_VALUE",
};

// Device information names: dev info action field names (89).
inline const std::string PGMDEV_STATIC_DEV_INFO_ACTION_FIELD_NAMES[] = {
    "USER_FRAME_LIST",     "DEVICE_CLOCK_MASK",   "ACTION_ERASE_VALUE",    "CONFIG_ERASE_END",
    "POWER_BYTE_END",      "KEY_WORD_START",      "ARRAY_FRAME_LIST",      "SECTOR_COUNT_HDR",
    "CHAIN_ADDRESS_VALUE", "DEVICE_MODE_START",   "ACTION_STEP_TABLE",     "DEVICE_ID_HDR",
    "POWER_STEP_LIST",     "SECTOR_DATA_MAP",     "OPTION_CLOCK_TYPE",     "DEVICE_ADDRESS_TYPE",
    "BLOCK_PAGE_LIST",     "SECURITY_ROW_TABLE",  "CONFIG_ROW_HDR",        "PROGRAM_COUNT_MAP",
    "USER_OFFSET_VALUE",   "BLOCK_ADDRESS_TYPE",  "CONFIG_REGION_VALUE",   "SECTOR_ERASE_HDR",
    "SECTOR_BYTE_END",     "JTAG_BIT_VALUE",      "FLASH_ADDRESS_START",   "POWER_REGION_MAP",
    "BLOCK_COUNT_INFO",    "JTAG_OFFSET_VALUE",   "SECURITY_ADDRESS_INFO", "DEVICE_ADDRESS_LIMIT",
    "BLOCK_REGION_HDR",    "SECURITY_OFFSET_MAP", "POWER_DELAY_END",       "VERIFY_WORD_TABLE",
    "OPTION_CLOCK_LIST",   "POWER_OFFSET_START",  "PROGRAM_FRAME_FLAGS",   "SECTOR_DATA_MASK",
    "TIMING_COUNT_MAP",    "FLASH_PAGE_MASK",     "CONFIG_OFFSET_MASK",    "JTAG_OFFSET_LIMIT",
    "PAD_COUNT_MAP",       "CONFIG_PAGE_END",     "SECURITY_COUNT_FLAGS",  "CHAIN_FRAME_END",
    "VERIFY_BIT_FLAGS",    "PROGRAM_ROW_LIMIT",   "POWER_DELAY_FLAGS",     "ARRAY_STEP_HDR",
    "PROGRAM_COUNT_TABLE", "STATUS_MODE_MAP",     "SECTOR_REGION_LIMIT",   "OPTION_CLOCK_LIMIT",
    "DEVICE_DELAY_MAP",    "DEVICE_BIT_TABLE",    "PAD_ROW_LIMIT",         "CONFIG_ROW_MASK",
    "OPTION_ERASE_MAP",    "USER_SIZE_MAP",       "SECTOR_REGION_VALUE",   "VERIFY_OFFSET_TYPE",
    "BLOCK_SIZE_LIST",     "JTAG_MODE_END",       "FLASH_ADDRESS_END",     "PAD_MODE_TYPE",
    "BLOCK_DELAY_LIST",    "VERIFY_ID_START",     "CONFIG_CLOCK_VALUE",    "POWER_BYTE_START",
    "FUSE_SIZE_FLAGS",     "FUSE_ADDRESS_INFO",   "VERIFY_BIT_LIST",       "SECURITY_DATA_FLAGS",
    "JTAG_SIZE_LIMIT",     "CHAIN_ERASE_FLAGS",   "CHAIN_ID_VALUE",        "BLOCK_ADDRESS_MASK",
    "TIMING_WORD_FLAGS",   "FLASH_FRAME_INFO",    "FLASH_WORD_MAP",        "ACTION_WORD_TABLE",
    "CHAIN_CLOCK_TABLE",   "STATUS_ID_INFO",      "CHAIN_DELAY_MAP",       "VERIFY_SIZE_FLAGS",
    "BLOCK_DELAY_HDR",
};

// Device information names: dev info field names (451).
inline const std::string PGMDEV_STATIC_DEV_INFO_FIELD_NAMES[] = {
    "DEVICE_COUNT_TABLE",  "PAD_BIT_INFO",         "PAD_PAGE_INFO",        "PROGRAM_ERASE_FLAGS",
    "ACTION_STEP_VALUE",   "TIMING_REGION_TYPE",   "CONFIG_CLOCK_END",     "KEY_BYTE_LIST",
    "ARRAY_COUNT_TYPE",    "PROGRAM_MODE_MASK",    "POWER_FRAME_MASK",     "USER_CLOCK_END",
    "ARRAY_DATA_FLAGS",    "CONFIG_MODE_HDR",      "OPTION_ERASE_TYPE",    "SECURITY_STEP_TABLE",
    "OPTION_CLOCK_END",    "POWER_ERASE_START",    "PROGRAM_ERASE_TABLE",  "KEY_PAGE_INFO",
    "OPTION_BYTE_INFO",    "DEVICE_BIT_START",     "POWER_DELAY_HDR",      "DEVICE_ID_MASK",
    "PROGRAM_CLOCK_TYPE",  "VERIFY_ID_INFO",       "JTAG_ERASE_LIMIT",     "SECTOR_FRAME_MASK",
    "CONFIG_MODE_VALUE",   "FUSE_STEP_LIMIT",      "TIMING_ID_TABLE",      "VERIFY_MODE_LIMIT",
    "POWER_MODE_VALUE",    "POWER_COUNT_MAP",      "VERIFY_WORD_TYPE",     "DEVICE_SIZE_TABLE",
    "CHAIN_DELAY_LIMIT",   "PROGRAM_ROW_FLAGS",    "PROGRAM_DATA_FLAGS",   "JTAG_BIT_END",
    "STATUS_DELAY_VALUE",  "KEY_CLOCK_END",        "SECURITY_ERASE_LIMIT", "DEVICE_OFFSET_LIMIT",
    "FUSE_DELAY_END",      "JTAG_FRAME_TYPE",      "BLOCK_BIT_END",        "CONFIG_ERASE_TABLE",
    "JTAG_OFFSET_MASK",    "SECURITY_SIZE_LIMIT",  "FUSE_CLOCK_INFO",      "JTAG_WORD_INFO",
    "BLOCK_MODE_START",    "TIMING_ID_VALUE",      "CHAIN_ADDRESS_TABLE",  "OPTION_ERASE_END",
    "STATUS_FRAME_START",  "TIMING_COUNT_LIST",    "JTAG_COUNT_VALUE",     "KEY_ID_MASK",
    "JTAG_FRAME_TABLE",    "USER_ROW_VALUE",       "CONFIG_SIZE_MAP",      "SECTOR_STEP_HDR",
    "PROGRAM_ADDRESS_HDR", "JTAG_ADDRESS_MAP",     "ACTION_CLOCK_LIST",    "SECURITY_ERASE_TABLE",
    "USER_ID_FLAGS",       "PAD_WORD_TABLE",       "OPTION_COUNT_TABLE",   "CONFIG_BYTE_START",
    "FLASH_WORD_INFO",     "CHAIN_FRAME_VALUE",    "ACTION_FRAME_LIMIT",   "ARRAY_BIT_LIMIT",
    "POWER_SIZE_FLAGS",    "DEVICE_CLOCK_LIST",    "BLOCK_ID_START",       "VERIFY_DATA_TYPE",
    "CONFIG_REGION_MAP",   "BLOCK_ERASE_LIST",     "SECURITY_COUNT_END",   "ACTION_MODE_TABLE",
    "ACTION_DELAY_INFO",   "JTAG_FRAME_LIST",      "FLASH_ROW_START",      "VERIFY_BIT_LIMIT",
    "VERIFY_PAGE_LIMIT",   "JTAG_ADDRESS_HDR",     "STATUS_DATA_END",      "BLOCK_PAGE_HDR",
    "JTAG_BYTE_TYPE",      "STATUS_ADDRESS_VALUE", "OPTION_DELAY_MASK",    "USER_ID_VALUE",
    "STATUS_PAGE_TYPE",    "PAD_ERASE_LIST",       "DEVICE_ADDRESS_FLAGS", "PROGRAM_STEP_VALUE",
    "POWER_ID_MASK",       "BLOCK_COUNT_LIMIT",    "SECURITY_ROW_TYPE",    "STATUS_ROW_TYPE",
    "PROGRAM_FRAME_INFO",  "POWER_PAGE_VALUE",     "BLOCK_STEP_START",     "JTAG_ROW_HDR",
    "POWER_BYTE_LIMIT",    "CHAIN_STEP_END",       "TIMING_FRAME_MAP",     "USER_SIZE_END",
    "CONFIG_SIZE_MASK",    "ACTION_ADDRESS_START", "CHAIN_COUNT_INFO",     "PROGRAM_DATA_LIMIT",
    "DEVICE_STEP_MAP",     "ARRAY_DELAY_START",    "PROGRAM_REGION_VALUE", "TIMING_DATA_TABLE",
    "ACTION_DATA_LIST",    "KEY_DATA_LIMIT",       "OPTION_BYTE_LIST",     "DEVICE_COUNT_FLAGS",
    "SECURITY_WORD_END",   "USER_ADDRESS_TABLE",   "FUSE_ID_VALUE",        "FUSE_DELAY_TYPE",
    "USER_MODE_INFO",      "STATUS_REGION_FLAGS",  "FLASH_ADDRESS_TABLE",  "PAD_ERASE_LIMIT",
    "ACTION_WORD_MASK",    "KEY_STEP_MAP",         "OPTION_ADDRESS_END",   "FLASH_CLOCK_HDR",
    "USER_COUNT_HDR",      "BLOCK_BIT_INFO",       "SECTOR_BYTE_MASK",     "DEVICE_DATA_FLAGS",
    "ARRAY_REGION_END",    "ARRAY_COUNT_VALUE",    "OPTION_ROW_MAP",       "USER_DELAY_END",
    "FLASH_BIT_START",     "VERIFY_BYTE_END",      "STATUS_FRAME_VALUE",   "SECTOR_BYTE_INFO",
    "ACTION_CLOCK_TABLE",  "BLOCK_CLOCK_HDR",      "SECTOR_PAGE_TABLE",    "POWER_SIZE_TABLE",
    "FUSE_REGION_TABLE",   "BLOCK_PAGE_FLAGS",     "ARRAY_BYTE_END",       "STATUS_CLOCK_FLAGS",
    "DEVICE_COUNT_TYPE",   "PAD_ID_MASK",          "BLOCK_ROW_HDR",        "SECTOR_DELAY_HDR",
    "FLASH_OFFSET_MAP",    "VERIFY_ADDRESS_LIMIT", "BLOCK_WORD_END",       "FUSE_PAGE_HDR",
    "USER_WORD_MAP",       "USER_SIZE_VALUE",      "OPTION_WORD_INFO",     "POWER_ADDRESS_FLAGS",
    "ACTION_ID_TABLE",     "PAD_OFFSET_START",     "FUSE_BIT_MASK",        "OPTION_DELAY_MAP",
    "JTAG_ID_INFO",        "VERIFY_ROW_TYPE",      "VERIFY_BYTE_TYPE",     "TIMING_ID_MASK",
    "BLOCK_MODE_INFO",     "DEVICE_STEP_VALUE",    "TIMING_SIZE_LIMIT",    "PAD_ADDRESS_INFO",
    "PAD_COUNT_LIMIT",     "BLOCK_COUNT_LIST",     "PROGRAM_PAGE_TABLE",   "JTAG_ERASE_FLAGS",
    "ACTION_DATA_TYPE",    "OPTION_MODE_LIST",     "ARRAY_OFFSET_START",   "PROGRAM_COUNT_TYPE",
    "CHAIN_MODE_END",      "FUSE_COUNT_LIST",      "KEY_MODE_LIMIT",       "DEVICE_DATA_LIMIT",
    "PAD_CLOCK_START",     "DEVICE_SIZE_VALUE",    "ARRAY_ID_MASK",        "USER_ID_END",
    "POWER_SIZE_MASK",     "CHAIN_BIT_MASK",       "POWER_SIZE_HDR",       "TIMING_ERASE_MASK",
    "OPTION_DATA_START",   "CHAIN_OFFSET_END",     "POWER_BIT_MASK",       "ARRAY_ROW_TABLE",
    "FUSE_MODE_START",     "SECURITY_WORD_HDR",    "SECURITY_STEP_END",    "SECURITY_BIT_FLAGS",
    "KEY_BIT_END",         "CONFIG_COUNT_END",     "POWER_STEP_HDR",       "OPTION_PAGE_TYPE",
    "FLASH_OFFSET_TABLE",  "FUSE_FRAME_MASK",      "ARRAY_WORD_INFO",      "ARRAY_STEP_LIMIT",
    "KEY_ID_START",        "POWER_DATA_LIMIT",     "SECURITY_CLOCK_LIST",  "KEY_STEP_VALUE",
    "DEVICE_MODE_HDR",     "POWER_BIT_VALUE",      "FLASH_OFFSET_LIST",    "BLOCK_COUNT_MAP",
    "ACTION_WORD_HDR",     "FLASH_OFFSET_START",   "OPTION_SIZE_FLAGS",    "ACTION_FRAME_FLAGS",
    "FLASH_DELAY_END",     "BLOCK_REGION_TABLE",   "STATUS_ADDRESS_FLAGS", "USER_STEP_START",
    "JTAG_SIZE_VALUE",     "JTAG_SIZE_FLAGS",      "KEY_OFFSET_INFO",      "CHAIN_COUNT_START",
    "JTAG_ID_END",         "TIMING_OFFSET_HDR",    "STATUS_SIZE_MASK",     "ACTION_BIT_TABLE",
    "USER_ERASE_LIST",     "TIMING_SIZE_LIST",     "STATUS_DATA_MASK",     "JTAG_CLOCK_MAP",
    "VERIFY_ROW_MASK",     "VERIFY_OFFSET_LIST",   "SECTOR_DELAY_MASK",    "TIMING_REGION_START",
    "FUSE_STEP_INFO",      "CONFIG_FRAME_FLAGS",   "KEY_CLOCK_INFO",       "SECURITY_COUNT_MASK",
    "CONFIG_REGION_HDR",   "TIMING_ADDRESS_LIMIT", "SECURITY_DELAY_MASK",  "PAD_STEP_TABLE",
    "PAD_STEP_HDR",        "DEVICE_OFFSET_VALUE",  "SECURITY_DELAY_FLAGS", "FUSE_BYTE_FLAGS",
    "ACTION_REGION_MAP",   "SECTOR_ROW_START",     "USER_COUNT_INFO",      "FLASH_ROW_MASK",
    "CHAIN_STEP_LIMIT",    "ACTION_DELAY_FLAGS",   "JTAG_ROW_MASK",        "OPTION_BIT_FLAGS",
    "TIMING_ERASE_FLAGS",  "SECTOR_CLOCK_VALUE",   "CHAIN_OFFSET_INFO",    "ACTION_WORD_INFO",
    "DEVICE_DELAY_TABLE",  "KEY_ADDRESS_INFO",     "KEY_STEP_TYPE",        "USER_ADDRESS_END",
    "STATUS_DELAY_TYPE",   "CHAIN_ID_TYPE",        "OPTION_ID_MASK",       "KEY_ID_FLAGS",
    "PROGRAM_ROW_LIST",    "CHAIN_COUNT_LIMIT",    "CONFIG_DATA_LIMIT",    "ARRAY_PAGE_END",
    "KEY_SIZE_LIST",       "STATUS_REGION_LIMIT",  "DEVICE_REGION_TABLE",  "TIMING_PAGE_LIMIT",
    "PAD_WORD_LIST",       "PAD_ID_FLAGS",         "USER_WORD_INFO",       "FUSE_ADDRESS_MAP",
    "ACTION_ID_MAP",       "POWER_PAGE_INFO",      "SECURITY_ID_TYPE",     "BLOCK_BIT_TABLE",
    "USER_CLOCK_HDR",      "OPTION_BIT_START",     "CONFIG_ROW_VALUE",     "STATUS_ERASE_TABLE",
    "OPTION_CLOCK_INFO",   "POWER_ADDRESS_VALUE",  "PROGRAM_WORD_MASK",    "PROGRAM_OFFSET_MASK",
    "JTAG_CLOCK_HDR",      "PROGRAM_PAGE_START",   "STATUS_CLOCK_START",   "SECTOR_REGION_FLAGS",
    "KEY_OFFSET_TYPE",     "CHAIN_WORD_LIST",      "VERIFY_SIZE_END",      "OPTION_WORD_LIST",
    "SECTOR_WORD_LIST",    "POWER_DATA_HDR",       "CONFIG_ROW_INFO",      "USER_ADDRESS_LIST",
    "CHAIN_BYTE_TYPE",     "VERIFY_ERASE_MASK",    "PROGRAM_BIT_START",    "SECTOR_ROW_MASK",
    "SECTOR_ROW_MAP",      "BLOCK_DATA_VALUE",     "STATUS_CLOCK_HDR",     "JTAG_WORD_MAP",
    "FLASH_ID_START",      "CHAIN_PAGE_START",     "ARRAY_PAGE_MAP",       "USER_CLOCK_INFO",
    "OPTION_FRAME_MAP",    "JTAG_ERASE_MASK",      "POWER_OFFSET_MASK",    "VERIFY_CLOCK_TYPE",
    "ARRAY_STEP_MAP",      "FLASH_PAGE_TABLE",     "STATUS_DELAY_FLAGS",   "DEVICE_ERASE_END",
    "BLOCK_ROW_LIST",      "USER_BYTE_LIMIT",      "TIMING_BYTE_END",      "STATUS_DELAY_START",
    "VERIFY_BYTE_VALUE",   "PAD_WORD_MAP",         "POWER_BIT_TABLE",      "BLOCK_OFFSET_TABLE",
    "ARRAY_FRAME_MASK",    "ARRAY_REGION_INFO",    "ARRAY_BYTE_LIST",      "ACTION_COUNT_FLAGS",
    "OPTION_ROW_INFO",     "JTAG_STEP_MASK",       "VERIFY_CLOCK_VALUE",   "PAD_OFFSET_TABLE",
    "KEY_ID_LIMIT",        "ARRAY_BIT_START",      "FLASH_BIT_VALUE",      "SECURITY_SIZE_TYPE",
    "POWER_MODE_START",    "ARRAY_OFFSET_END",     "DEVICE_FRAME_LIST",    "STATUS_STEP_MAP",
    "PROGRAM_CLOCK_INFO",  "KEY_STEP_HDR",         "TIMING_ROW_VALUE",     "VERIFY_REGION_MAP",
    "PROGRAM_FRAME_START", "FUSE_DATA_FLAGS",      "KEY_BYTE_END",         "FUSE_OFFSET_TABLE",
    "FUSE_CLOCK_END",      "DEVICE_BIT_TYPE",      "STATUS_OFFSET_START",  "TIMING_STEP_LIST",
    "FLASH_ID_MAP",        "SECURITY_SIZE_MAP",    "SECURITY_SIZE_START",  "OPTION_BYTE_TABLE",
    "TIMING_ERASE_TABLE",  "USER_ERASE_END",       "PROGRAM_STEP_LIMIT",   "JTAG_ERASE_INFO",
    "CONFIG_PAGE_TYPE",    "ACTION_SIZE_END",      "CONFIG_FRAME_LIST",    "ARRAY_BIT_HDR",
    "SECURITY_MODE_LIST",  "BLOCK_BYTE_END",       "PAD_REGION_TABLE",     "JTAG_PAGE_LIST",
    "OPTION_ERASE_FLAGS",  "FLASH_DATA_END",       "OPTION_ERASE_START",   "PROGRAM_DELAY_LIST",
    "CONFIG_BIT_INFO",     "FUSE_MODE_MASK",       "PROGRAM_ERASE_VALUE",  "SECURITY_ID_MAP",
    "POWER_OFFSET_MAP",    "PROGRAM_ADDRESS_MASK", "CONFIG_REGION_INFO",   "SECTOR_SIZE_FLAGS",
    "JTAG_ADDRESS_MASK",   "TIMING_STEP_MASK",     "TIMING_OFFSET_VALUE",  "ACTION_ID_HDR",
    "CHAIN_COUNT_END",     "KEY_REGION_VALUE",     "FUSE_REGION_MASK",     "PROGRAM_ADDRESS_MAP",
    "CHAIN_ADDRESS_HDR",   "ARRAY_CLOCK_LIMIT",    "JTAG_PAGE_START",      "OPTION_COUNT_MASK",
    "SECURITY_ERASE_HDR",  "ARRAY_WORD_MAP",       "JTAG_DELAY_VALUE",     "SECURITY_COUNT_TYPE",
    "STATUS_ADDRESS_TYPE", "DEVICE_MODE_FLAGS",    "FLASH_REGION_TABLE",   "STATUS_ROW_INFO",
    "KEY_ERASE_FLAGS",     "POWER_ID_END",         "ACTION_BIT_TYPE",      "FUSE_ERASE_VALUE",
    "VERIFY_REGION_END",   "USER_FRAME_END",       "FLASH_OFFSET_VALUE",   "SECTOR_BIT_MASK",
    "JTAG_DELAY_INFO",     "SECURITY_ID_MASK",     "CONFIG_PAGE_INFO",     "CHAIN_DELAY_MASK",
    "CONFIG_WORD_HDR",     "POWER_OFFSET_LIMIT",   "VERIFY_DATA_END",      "FLASH_ERASE_FLAGS",
    "USER_DELAY_TYPE",     "DEVICE_PAGE_START",    "STATUS_ERASE_VALUE",   "SECTOR_ID_LIST",
    "FUSE_BYTE_LIMIT",     "FUSE_BIT_VALUE",       "ACTION_ADDRESS_HDR",   "OPTION_COUNT_MAP",
    "USER_STEP_TABLE",     "JTAG_CLOCK_TABLE",     "CONFIG_WORD_MASK",     "FLASH_COUNT_START",
    "ACTION_OFFSET_LIMIT", "ARRAY_REGION_TABLE",   "OPTION_OFFSET_HDR",
};

// Device information names: dev info type names (22).
inline const std::string PGMDEV_STATIC_DEV_INFO_TYPE_NAMES[] = {
    "SECTOR_DATA_START",    "BLOCK_STEP_INFO",    "VERIFY_WORD_HDR",    "SECTOR_BYTE_MAP",
    "ACTION_STEP_END",      "CONFIG_STEP_END",    "ARRAY_BIT_END",      "CHAIN_WORD_LIMIT",
    "POWER_ERASE_TYPE",     "DEVICE_COUNT_START", "ACTION_REGION_INFO", "SECTOR_FRAME_LIMIT",
    "JTAG_FRAME_START",     "KEY_ADDRESS_END",    "POWER_REGION_FLAGS", "FUSE_ERASE_LIMIT",
    "SECURITY_FRAME_VALUE", "SECURITY_SIZE_END",  "SECTOR_ID_INFO",     "STATUS_COUNT_MAP",
    "CONFIG_REGION_LIST",   "ARRAY_STEP_START",
};

// Device information names: dev info flash field names (36).
inline const std::string PGMDEV_STATIC_DEV_INFO_FLASH_FIELD_NAMES[] = {
    "CONFIG_FRAME_HDR",    "CONFIG_ERASE_TYPE",   "CONFIG_OFFSET_LIMIT", "ARRAY_WORD_TABLE",
    "CONFIG_ID_LIMIT",     "SECURITY_STEP_VALUE", "ARRAY_REGION_FLAGS",  "SECURITY_MODE_TYPE",
    "ACTION_ADDRESS_LIST", "KEY_SIZE_MASK",       "STATUS_PAGE_MAP",     "CHAIN_ERASE_START",
    "ACTION_ROW_TABLE",    "ACTION_MODE_LIST",    "ARRAY_ERASE_TYPE",    "SECTOR_STEP_START",
    "DEVICE_SIZE_INFO",    "VERIFY_SIZE_INFO",    "ACTION_DELAY_END",    "KEY_BYTE_START",
    "ARRAY_OFFSET_MASK",   "KEY_BIT_LIMIT",       "SECTOR_ROW_FLAGS",    "BLOCK_BIT_MAP",
    "FUSE_ERASE_TABLE",    "PROGRAM_BYTE_INFO",   "PROGRAM_BIT_TABLE",   "OPTION_ID_TYPE",
    "TIMING_FRAME_LIST",   "JTAG_BYTE_START",     "USER_BIT_TYPE",       "PROGRAM_STEP_MAP",
    "KEY_DATA_MASK",       "CHAIN_ID_FLAGS",      "FUSE_DATA_VALUE",     "CHAIN_FRAME_LIMIT",
};

// Device information names: dev info security field names (25).
inline const std::string PGMDEV_STATIC_DEV_INFO_SECURITY_FIELD_NAMES[] = {
    "POWER_SIZE_TYPE",  "PROGRAM_DELAY_INFO", "USER_REGION_MAP",    "TIMING_WORD_LIMIT",
    "PAD_FRAME_LIMIT",  "ACTION_MODE_INFO",   "FLASH_STEP_FLAGS",   "VERIFY_CLOCK_LIST",
    "DEVICE_ROW_END",   "POWER_ERASE_MASK",   "USER_STEP_MAP",      "USER_SIZE_MASK",
    "CONFIG_SIZE_TYPE", "PAD_WORD_VALUE",     "SECURITY_BIT_LIST",  "SECTOR_OFFSET_HDR",
    "FLASH_ERASE_LIST", "DEVICE_DELAY_START", "DEVICE_ERASE_START", "PAD_STEP_MAP",
    "KEY_ADDRESS_MAP",  "BLOCK_ROW_MAP",      "CONFIG_DATA_TYPE",   "TIMING_CLOCK_TABLE",
    "BLOCK_OFFSET_MAP",
};

// Device information names: dev info power field names (9).
inline const std::string PGMDEV_STATIC_DEV_INFO_POWER_FIELD_NAMES[] = {
    "BLOCK_BIT_START", "PROGRAM_MODE_HDR", "CONFIG_CLOCK_FLAGS",
    "SECTOR_SIZE_MAP", "KEY_WORD_LIMIT",   "KEY_COUNT_VALUE",
    "ARRAY_ROW_MASK",  "POWER_WORD_START", "SECURITY_FRAME_MAP",
};

// Device information names: dev info timing field names (17).
inline const std::string PGMDEV_STATIC_DEV_INFO_TIMING_FIELD_NAMES[] = {
    "JTAG_WORD_FLAGS",   "SECTOR_MODE_TABLE", "VERIFY_MODE_TYPE",   "USER_BIT_INFO",
    "DEVICE_DATA_MAP",   "TIMING_ID_FLAGS",   "TIMING_STEP_END",    "USER_BIT_MASK",
    "POWER_REGION_END",  "SECTOR_ERASE_LIST", "DEVICE_OFFSET_LIST", "JTAG_REGION_HDR",
    "KEY_BIT_TYPE",      "USER_STEP_HDR",     "JTAG_STEP_LIMIT",    "PAD_ADDRESS_START",
    "ACTION_DATA_VALUE",
};

// Column names of the device information source table, in column order.
inline const std::string PGMDEV_STATIC_DEV_INFO_CSV_COLUMNS[] = {
    "family",
    "pcf",
    "device",
    "part",
    "skip_pof_bitstream_conversion",
    "no_flash_option_for_unvm",
    "ini_fbgen_flow",
    "support_legacy_f2p",
    "support_cpf",
    "support_ba_flow",
    "support_ob",
    "support_download_mode",
    "support_sld",
    "support_asc",
    "support_asc_ini",
    "support_remote_local_update",
    "need_quillon_padding_mask",
    "support_aes_wo_ini",
    "unsupported_by_tandor2",
    "unsupported_by_quillon",
    "allow_partial_frame",
    "jtag_program_initialize_in_rti",
    "issue_apf_disengage",
    "jtag_program_initialize_microsec",
    "jtag_configuration_prepad_bits",
    "jtag_program_startup_tck",
    "aes_n_fuse_bits",
    "aes_fuse_bit_location",
    "aes_n_nv_key_bits",
    "aes_n_v_key_bits",
    "aes_n_verify_bits",
    "n_iv_bits",
    "ekp_alg_family",
    "ps_cmp_dclk_ratio",
    "fpp_cmp_dclk_ratio",
    "fppx16_cmp_dclk_ratio",
    "fppx32_cmp_dclk_ratio",
    "cmp_fbgen_start_block",
    "cmp_fbgen_end_block",
    "cmp_end_padding_alignement",
    "cmp_end_pad_with_one",
    "support_prpof",
    "need_factory_instr",
    "need_config_io_instr",
    "n_tck_ticks_after_config_io",
    "advanced_family",
    "as_cb_hold_time_issue",
    "as_cb_4byte_addressing",
    "as_read_in_two_steps",
    "as_second_offset_addr",
    "asx1_second_offset_extra_bytes",
    "asx4_second_offset_extra_bytes",
    "asc_dummy_cycle",
    "spi_dummy_clk_x1_128mb",
    "spi_dummy_clk_x1_256mb",
    "spi_dummy_clk_x4_128mb",
    "spi_dummy_clk_x4_256mb",
    "supported_max_cascaded_asc_count",
    "as_minimum_flash_density",
    "skip_fbgen",
    "cfg_dev",
    "cvp_post_iocsr_padding_cbws",
    "hps_post_iocsr_padding_cbws",
    "cvp_pre_core_padding_cbws",
    "cvp_pre_cmp_core_padding_cbws",
    "cvp_pre_enc_core_padding_cbws",
    "fbgen_cvp_core_start_block",
    "fbgen_hps_core_start_block",
    "support_ru_cvp",
    "support_ru_hps",
    "support_fi",
    "fi_program_twice",
    "use_sdm",
    "flash_width_bits",
    "default_prog_mode",
    "cmf_flash_block_size",
    "asc_voltage",
    "support_sdmmc",
    "support_vab",
    "support_sdos",
    "use_subidcode",
    "dummy_string",
    "dummy_byte",
    "dummy_word",
    "dummy_dword",
    "dummy_bool",
};

// Column names of the flash source table, in column order.
inline const std::string PGMDEV_STATIC_FLASH_CSV_COLUMNS[] = {
    "manufacturer_name", "device_name",      "silicon_id",
    "memory_id",         "memory_id_index",  "memory_type",
    "memory_type_index", "mfc_id",           "mfc_id_index",
    "marlo_id",          "default_dev",      "ini",
    "extended_mode",     "micron_flow",      "spansion_flow",
    "startup_protected", "aai_mode",         "flag_status",
    "die_count",         "device_bit_size",  "device_sector_byte",
    "half_size",         "byte4_addressing", "bulk_erase_time",
    "sec_erase_time",    "program_utime",    "protection_mask",
    "protection_value",  "unprotect_value",  "protection_division",
    "bottom_value",      "sdm_support",      "asc_voltage",
};

// Device family names of the catalogue, the generic family last.
inline const std::string PGMDEV_STATIC_FAMILY_NAMES[] = {
    "ZORQA_I",      "ZORQA_I_GT",    "ZORQA_II_LP",  "ZORQA_III",     "ZORQA_III_LP",
    "ZORQA_IV_LP",  "ZORQA_V",       "ZORQA_V_LP",   "ZORQA_VI_GX",   "ZORQA_VII",
    "ZORQA_VII_GX", "ZORQA_VIII",    "KALIX_I",      "KALIX_I_GT",    "KALIX_II",
    "KALIX_III",    "KALIX_III_SX",  "KALIX_IV_E",   "KALIX_V",       "KALIX_V_LP",
    "KALIX_VI",     "KALIX_VII",     "VERANT_I",     "VERANT_I_E",    "VERANT_II_E",
    "VERANT_III",   "VERANT_III_GT", "VERANT_IV_SX", "VERANT_V",      "VERANT_V_GX",
    "VERANT_VI_SX", "NOLTA_I",       "NOLTA_I_E",    "NOLTA_II_SX",   "NOLTA_III",
    "NOLTA_III_E",  "NOLTA_IV_GX",   "NOLTA_V",      "NOLTA_V_GT",    "TAMRIS_I",
    "TAMRIS_I_GX",  "TAMRIS_II_GT",  "TAMRIS_III",   "TAMRIS_III_LP", "TAMRIS_IV_LP",
    "TAMRIS_V",     "TAMRIS_V_LP",   "HEXOR_I",      "HEXOR_I_LP",    "HEXOR_II_LP",
    "HEXOR_III",    "HEXOR_III_GX",  "HEXOR_IV_LP",  "HEXOR_V",       "PADRO_I",
    "PADRO_I_GT",   "PADRO_II_GX",   "PADRO_III",    "PADRO_III_GT",  "PADRO_IV_LP",
    "RUBEL_I",      "RUBEL_I_GX",    "RUBEL_II_GX",  "RUBEL_III",     "RUBEL_III_LP",
    "GALMO_I",      "GALMO_I_E",     "GALMO_II_GX",  "GALMO_III",     "CONFLEX_I",
    "CONFLEX_I_LP", "GENERIC",
};

// Family enumeration names of the product lines, with the invalid and generic entries.
inline const std::string PGMDEV_STATIC_FAMILY_ENUM_NAMES[] = {
    "DEV_FAMILY_INVALID", "DEV_FAMILY_ZORQA",  "DEV_FAMILY_KALIX",   "DEV_FAMILY_VERANT",
    "DEV_FAMILY_NOLTA",   "DEV_FAMILY_TAMRIS", "DEV_FAMILY_HEXOR",   "DEV_FAMILY_PADRO",
    "DEV_FAMILY_RUBEL",   "DEV_FAMILY_GALMO",  "DEV_FAMILY_CONFLEX", "GENERIC",
};

// Alphabets of the user flash definition encoding.
inline const std::string PGMDEV_STATIC_ALPHABETS[] = {
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789",
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz",
};
