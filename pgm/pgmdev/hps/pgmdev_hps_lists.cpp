// HPS SPI and NAND flash list singletons: user definitions first, then the built-ins.
#include "hps/pgmdev_hps_builtin.h"
#include "hps/pgmdev_hps_user_section.h"

PGMDEV_HPS_SPI_MGR* PGMDEV_HPS_SPI_MGR::m_mgr = nullptr;
PGMDEV_HPS_NAND_MGR* PGMDEV_HPS_NAND_MGR::m_mgr = nullptr;

namespace {

// Destroys the records from the back, as they were built front to back.
template <typename RECORD>
void release_records(std::vector<std::unique_ptr<RECORD>>& records) {
  while (!records.empty()) records.pop_back();
}

}  // namespace

PGMDEV_HPS_SPI_MGR::PGMDEV_HPS_SPI_MGR() {
  initialize_ini_file();
  pgmdev::HPS_RECORD_LISTS<PGMDEV_HPS_SPI_STRUCTURE> lists{m_records, m_list, m_user_list};
  for (const PGMDEV_HPS_SPI_STRUCTURE& record : pgmdev::builtin_hps_spi_list()) {
    lists.append(record, false);
  }
}

PGMDEV_HPS_SPI_MGR::~PGMDEV_HPS_SPI_MGR() {
  m_user_list.clear();
  m_list.clear();
  release_records(m_records);
}

void PGMDEV_HPS_SPI_MGR::initialize_ini_file() {
  pgmdev::load_user_records<PGMDEV_HPS_SPI_STRUCTURE>(
      PGMDEV_FLASH_INI_HPS_SPI, PGMDEV_HPS_SPI_SIGNATURE, PGMDEV_HPS_SPI_PARAM_COUNT,
      PGMDEV_HPS_SPI_PARAM_TYPES, {m_records, m_list, m_user_list});
}

PGMDEV_HPS_SPI_MGR* PGMDEV_HPS_SPI_MGR::get_mgr() {
  if (m_mgr == nullptr) m_mgr = new PGMDEV_HPS_SPI_MGR();
  return m_mgr;
}

void PGMDEV_HPS_SPI_MGR::delete_mgr() {
  delete m_mgr;
  m_mgr = nullptr;
}

PGMDEV_HPS_NAND_MGR::PGMDEV_HPS_NAND_MGR() {
  initialize_ini_file();
  pgmdev::HPS_RECORD_LISTS<PGMDEV_HPS_NAND_STRUCTURE> lists{m_records, m_list, m_user_list};
  for (const PGMDEV_HPS_NAND_STRUCTURE& record : pgmdev::builtin_hps_nand_list()) {
    lists.append(record, false);
  }
}

PGMDEV_HPS_NAND_MGR::~PGMDEV_HPS_NAND_MGR() {
  m_user_list.clear();
  m_list.clear();
  release_records(m_records);
}

void PGMDEV_HPS_NAND_MGR::initialize_ini_file() {
  pgmdev::load_user_records<PGMDEV_HPS_NAND_STRUCTURE>(
      PGMDEV_FLASH_INI_HPS_NAND, PGMDEV_HPS_NAND_SIGNATURE, PGMDEV_HPS_NAND_PARAM_COUNT,
      PGMDEV_HPS_NAND_PARAM_TYPES, {m_records, m_list, m_user_list});
}

PGMDEV_HPS_NAND_MGR* PGMDEV_HPS_NAND_MGR::get_mgr() {
  if (m_mgr == nullptr) m_mgr = new PGMDEV_HPS_NAND_MGR();
  return m_mgr;
}

void PGMDEV_HPS_NAND_MGR::delete_mgr() {
  delete m_mgr;
  m_mgr = nullptr;
}
