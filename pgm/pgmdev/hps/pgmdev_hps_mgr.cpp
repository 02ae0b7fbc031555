// The HPS manager singleton: selection of the HPS kind by its debug port's JTAG ID code.
#include "pgmdev_hps_mgr.h"

#include "hps/pgmdev_hps_table_data.h"

PGMDEV_HPS_MGR* PGMDEV_HPS_MGR::m_mgr = nullptr;

PGMDEV_HPS_MGR* PGMDEV_HPS_MGR::get_mgr() {
  if (m_mgr == nullptr) m_mgr = new PGMDEV_HPS_MGR();
  return m_mgr;
}

void PGMDEV_HPS_MGR::delete_mgr() {
  delete m_mgr;
  m_mgr = nullptr;
}

bool PGMDEV_HPS_MGR::set_current_hps(DWORD id) {
  m_current_hps = INVALID_DWORD;  // a failed selection also drops the earlier one
  const PGMDEV_HPS_STRUCTURE* table = pgmdev::hps_table();
  for (DWORD i = 0; i < pgmdev::HPS_TABLE_SIZE; ++i) {
    if (table[i].dap_idcode == id) {
      m_current_hps = i;
      return true;
    }
  }
  return false;
}

const PGMDEV_HPS_STRUCTURE* PGMDEV_HPS_MGR::get_current_hps() const {
  return m_current_hps < pgmdev::HPS_TABLE_SIZE ? &pgmdev::hps_table()[m_current_hps] : nullptr;
}
