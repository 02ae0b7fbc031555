// Encoded message records of the device layer: carried, never read by the library.
#pragma once

#include "pgm_types.h"

// A message stored encoded: two or three encoded texts, a number and a category word.
struct PGMDEV_API PGMDEV_ENCODED_MESSAGE {
  const char* m_texts[3];
  DWORD m_number;
  const char* m_category;
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
