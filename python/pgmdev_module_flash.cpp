// The Python module's serial flash: the flash manager as a context manager, the user flash
// definition value (encode, decode, check, seal) and SFDP.
#include <pybind11/stl.h>

#include <memory>
#include <utility>

#include "flash_check.h"
#include "flash_record.h"
#include "output.h"
#include "pgmdev_module.h"
#include "platform.h"
#include "sfdp_dump.h"

namespace pgmdev::python {

namespace {

// The loaded flash database for the time of a `with` block.
class FLASH_SESSION {
 public:
  FLASH_SESSION& enter() {
    // A user definition that is set but refused is a RuntimeWarning with the reason.
    m_manager = answers::open_flash_manager(1, [](const std::string& text) {
      if (PyErr_WarnEx(PyExc_RuntimeWarning, text.c_str(), 1) != 0) throw py::error_already_set();
    });
    return *this;
  }
  void exit(const py::args&) { m_manager.reset(); }

  py::list records() const {
    py::list list;
    const PGMDEV_FLASH_MANAGER& manager = open();
    for (DWORD i = 0; i < manager.get_flash_count(); ++i) {
      list.append(to_python(answers::flash_record_json(manager.get_flash_database()[i])));
    }
    return list;
  }

  // One record (or None) per identifier, each identified in its own chain slot.
  py::list identify(const py::args& ids, bool silicon) {
    PGMDEV_FLASH_MANAGER& manager = open();
    py::list found;
    for (py::handle id : ids) {
      const std::vector<BYTE> bytes = answers::parse_id(py::str(id));
      BYTE read_out[PGMDEV_FLASH_MANAGER::FLASH_ID_SIZE] = {};
      std::copy(bytes.begin(), bytes.end(), read_out);
      if (!manager.flash_id_database_mapping(silicon, 0, read_out)) {
        found.append(py::none());
        continue;
      }
      const DWORD index = manager.get_flash_mapping_index(0, false);
      found.append(to_python(answers::flash_record_json(manager.get_flash_database()[index])));
    }
    return found;
  }

  // Why no loaded record answers an identifier, or None when one does.
  py::object explain(const std::string& id, bool silicon) {
    PGMDEV_FLASH_MANAGER& manager = open();
    const std::vector<BYTE> bytes = answers::parse_id(id);
    BYTE read_out[PGMDEV_FLASH_MANAGER::FLASH_ID_SIZE] = {};
    std::copy(bytes.begin(), bytes.end(), read_out);
    if (manager.flash_id_database_mapping(silicon, 0, read_out)) return py::none();
    return to_python(
        answers::flash_explanation_json(manager.explain_unanswered_id(silicon, read_out)));
  }

 private:
  PGMDEV_FLASH_MANAGER& open() const {
    if (!m_manager)
      throw answers::QueryError("the flash manager is closed: use it in a with block");
    return *m_manager;
  }

  std::unique_ptr<PGMDEV_FLASH_MANAGER> m_manager;
};

// The fields text of a definition ("@" before each of the 33 columns, "@" at the end).
std::string fields_text(const py::dict& record) {
  const nlohmann::ordered_json columns = answers::flash_record_json(PGMDEV_SFL_FLASH_INFO{});
  std::string text;
  for (const auto& column : columns.items()) {
    if (!record.contains(column.key())) {
      throw answers::QueryError("the definition has no column '" + column.key() + "'");
    }
    const py::handle value = record[py::str(column.key())];
    text += '@';
    if (py::isinstance<py::bool_>(value)) {
      text += value.cast<bool>() ? "1" : "0";
    } else {
      text += py::str(value).cast<std::string>();
    }
  }
  return text + '@';
}

std::string seal(const py::object& definition) {
  const std::string fields = py::isinstance<py::dict>(definition)
                                 ? fields_text(definition.cast<py::dict>())
                                 : definition.cast<std::string>();
  std::string why;
  std::string value = PGMDEV_FLASH_MANAGER::seal_user_flash(fields, &why);
  if (value.empty()) throw answers::QueryError("the definition did not encode: " + why);
  // A value that would not load is refused, as `pgmdev flash check` would refuse it.
  const nlohmann::ordered_json verdict = answers::flash_check_json(value);
  if (!verdict["loads"].get<bool>()) {
    throw answers::QueryError("the definition would not load: " +
                              verdict["reason"].get<std::string>());
  }
  return value;
}

std::string decode(const std::string& value) {
  std::string why;
  std::string text = PGMDEV_FLASH_MANAGER::decode_user_flash(value, &why);
  if (text.empty()) {
    throw answers::QueryError("the value does not decode" + (why.empty() ? "" : ": " + why));
  }
  return text;
}

std::string encode(const std::string& text) {
  std::string why;
  std::string value = PGMDEV_FLASH_MANAGER::encode_user_flash(text, &why);
  if (value.empty()) throw answers::QueryError("the text did not encode: " + why);
  return value;
}

}  // namespace

void bind_flash(py::module_& m) {
  py::class_<FLASH_SESSION>(m, "FlashManager",
                            "The serial flash database, loaded for the time of a with block:\n\n"
                            "    with pgmdev.FlashManager() as flash:\n"
                            "        chip = flash.identify(\"EF4018\")[0]")
      .def(py::init<>())
      .def("__enter__", &FLASH_SESSION::enter, py::return_value_policy::reference_internal)
      .def("__exit__", &FLASH_SESSION::exit)
      .def_property_readonly("records", &FLASH_SESSION::records,
                             "Every enabled record (the user's first when one is defined),\n"
                             "as dicts by column name.")
      .def("identify", &FLASH_SESSION::identify, py::kw_only(), py::arg("silicon") = false,
           "identify(*ids, silicon=False): for each identifier read-out (hex text such as\n"
           "\"EF4018\", in the order the chip sends it) the record that answers it, or None.")
      .def("explain", &FLASH_SESSION::explain, py::arg("id"), py::kw_only(),
           py::arg("silicon") = false,
           "explain(id, silicon=False): why no loaded record answers the identifier, as\n"
           "`pgmdev flash identify --json` says it: {'gated': [{'device_name', 'switch',\n"
           "'meaning'}], 'refused': {'chip', 'reason'} or None, 'maker', 'text'}; None when\n"
           "a record answers it.");
  m.def("flash_encode", &encode, py::arg("text"),
        "The configuration value that carries `text` (no seal is added: see flash_seal).");
  m.def("flash_decode", &decode, py::arg("value"),
        "The text a configuration value carries; ValueError when it does not decode.");
  m.def("flash_seal", &seal, py::arg("definition"),
        "The configuration value of a definition (a dict of the 33 columns, or its fields\n"
        "text \"@...@\"), sealed for this build; ValueError, with flash_check's reason, for a\n"
        "definition that would not load.");
  m.def(
      "flash_check",
      [](const std::string& value) { return to_python(answers::flash_check_json(value)); },
      py::arg("value"),
      "Whether a configuration value would load, as `pgmdev flash check --json` says:\n"
      "{'loads', 'refused_at', 'reason', 'record' (or 'fields')}.");
}

void bind_sfdp(py::module_& m) {
  m.def(
      "sfdp_read",
      [](const std::string& path) {
        return to_python(answers::tables_json(answers::read_dump(path)));
      },
      py::arg("path"), "The tables of an SFDP dump file (raw, hexdump -C, xxd or plain hex).");
  m.def(
      "sfdp_derive",
      [](const std::string& path, const std::string& id, std::optional<std::string> name,
         std::optional<std::string> voltage, std::optional<int> dies) {
        PGMDEV_SFDP_CHOICES choices;
        choices.device_name = std::move(name);
        choices.asc_voltage = std::move(voltage);
        // A count no byte holds becomes 0, which the library refuses in its own words, rather
        // than its low byte.
        if (dies) choices.die_count = *dies >= 0 && *dies <= 0xFF ? BYTE(*dies) : BYTE(0);
        const PGMDEV_SFDP sfdp = answers::read_dump(path);
        return to_python(answers::definition_json(sfdp, answers::derive(sfdp, id, choices)));
      },
      py::arg("path"), py::arg("id"), py::kw_only(), py::arg("name") = py::none(),
      py::arg("voltage") = py::none(), py::arg("dies") = py::none(),
      "The flash definition derived from an SFDP dump and the chip's 3 identifier bytes,\n"
      "as `pgmdev flash sfdp --json` gives it: definition, sources, warnings, tables.\n"
      "flash_seal(result['definition']) gives its configuration value.");
}

}  // namespace pgmdev::python
