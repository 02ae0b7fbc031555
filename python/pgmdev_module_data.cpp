// The Python module's HPS boot flash lists and user definitions, and the two generators.
#include <pybind11/stl.h>

#include <algorithm>

#include "hps_kind.h"
#include "pgmdev_module.h"
#include "platform.h"

namespace pgmdev::python {

namespace {

// An answer as the dialogue takes it. Text goes as typed; a bool answers a flag and an int
// a number, in the prompt's unit, written the way the prompt reads it (hex or decimal). Any
// other type is a TypeError: an int must never be read back as other digits.
std::string answer_text(PGMDEV_PARAM_TYPE type, const answers::HPS_RULE& rule,
                        const std::string& key, const py::handle& value) {
  if (py::isinstance<py::str>(value)) return value.cast<std::string>();
  const bool is_bool = py::isinstance<py::bool_>(value);
  if (type == PGMDEV_PARAM_BOOL && is_bool) return value.cast<bool>() ? "Y" : "N";
  const bool number = type != PGMDEV_PARAM_BOOL && type != PGMDEV_PARAM_STRING;
  if (number && !is_bool && py::isinstance<py::int_>(value)) {
    return rule.hex ? py::str(py::module_::import("builtins").attr("format")(value, "X"))
                          .cast<std::string>()
                    : py::str(value).cast<std::string>();
  }
  const char* wanted = type == PGMDEV_PARAM_BOOL     ? "a bool"
                       : type == PGMDEV_PARAM_STRING ? "text"
                                                     : "an int";
  throw py::type_error(key + " takes " + wanted + " or the dialogue's text, not " +
                       py::str(value.get_type().attr("__name__")).cast<std::string>());
}

template <class RECORD>
void hps_add(const answers::HPS_KIND<RECORD>& kind, const py::dict& answers, bool force) {
  if (!force) answers::check_data_file_before_edit();
  RECORD record;
  for (DWORD i = 0; i < kind.count; ++i) {
    const std::string& key = kind.keys[i];
    if (!answers.contains(key)) throw answers::QueryError("no answer for " + key);
    std::string text = answer_text(kind.types[i], kind.rules[i], key, answers[py::str(key)]);
    gen_remove_leading_and_trailing_white_spaces(text);
    std::string error;
    if (!answers::accept(kind.types[i], kind.rules[i], text, record.params[i], error)) {
      throw answers::QueryError("Invalid input for " + key + " ('" + text + "'): " + error);
    }
  }
  for (const auto& item : answers) {
    const std::string key = py::str(item.first);
    if (std::find(kind.keys, kind.keys + kind.count, key) == kind.keys + kind.count) {
      throw answers::QueryError("no parameter " + key + " in this kind of definition");
    }
  }
  answers::append_user_record(kind, record, force);
}

template <class RECORD>
py::list hps_fields(const answers::HPS_KIND<RECORD>& kind) {
  py::list fields;
  for (DWORD i = 0; i < kind.count; ++i)
    fields.append(py::make_tuple(kind.keys[i], kind.labels[i]));
  return fields;
}

}  // namespace

std::string hps_kind_name(const std::string& kind) {
  std::string word = kind;
  stl_tolower(word);
  if (word != "spi" && word != "nand")
    throw answers::QueryError("KIND is spi or nand, not '" + kind + "'");
  return word;
}

void bind_hps(py::module_& m) {
  m.def(
      "hps_list",
      [](const std::string& kind, const std::string& manufacturer, std::optional<unsigned> size) {
        const bool spi = hps_kind_name(kind) == "spi";
        answers::warn_if_data_file_damaged(spi);  // its user definitions would otherwise be missing
        const answers::HpsFilter filter{manufacturer, size ? std::to_string(*size) : ""};
        return to_python(answers::hps_list_json(spi, filter));
      },
      py::arg("kind"), py::kw_only(), py::arg("manufacturer") = "", py::arg("size") = py::none(),
      "The HPS boot flash of a kind (\"spi\" or \"nand\"), user definitions first, as\n"
      "`pgmdev hps list --json` gives them: dicts with number (from 1), source (\"user\" or\n"
      "\"built-in\") and the fields. Only one maker (spi: its name, case ignored; nand: its ID\n"
      "in hex) and only one size (spi: Mbit; nand: Mbyte) when given.");
  m.def(
      "hps_fields",
      [](const std::string& kind) {
        return hps_kind_name(kind) == "spi" ? hps_fields(answers::hps_spi_kind())
                                            : hps_fields(answers::hps_nand_kind());
      },
      py::arg("kind"), "The (key, prompt label) pairs of a definition, in dialogue order.");
  m.def(
      "hps_add",
      [](const std::string& kind, const py::dict& answers, bool force) {
        hps_kind_name(kind) == "spi" ? hps_add(answers::hps_spi_kind(), answers, force)
                                     : hps_add(answers::hps_nand_kind(), answers, force);
      },
      py::arg("kind"), py::arg("answers"), py::kw_only(), py::arg("force") = false,
      "Adds a user definition to pgm_flash.ini: `answers` maps every key of hps_fields(kind)\n"
      "to the answer `pgmdev hps add` would take as text, or to its value: an int in the\n"
      "prompt's unit (0x20 is the ID 20 hex), a bool for a Y/N question. spi's siid is the\n"
      "JEDEC ID with the first byte read as the lowest (20 BA 17 is 0x17BA20). TypeError for\n"
      "another type, ValueError with the dialogue's reason for a refused answer; `force`\n"
      "rewrites a damaged data file (kept aside first).");
  m.def(
      "hps_remove",
      [](const std::string& kind, long index, bool force) {
        if (index < 1) throw answers::QueryError("no user definition " + std::to_string(index));
        return hps_kind_name(kind) == "spi"
                   ? answers::remove_user_record(answers::hps_spi_kind(), size_t(index), force)
                   : answers::remove_user_record(answers::hps_nand_kind(), size_t(index), force);
      },
      py::arg("kind"), py::arg("index"), py::kw_only(), py::arg("force") = false,
      "Removes the index-th (from 1) user definition; returns how many are left.");
}

void bind_generators(py::module_& m) {
  m.def("generate_device_info", &answers::generate_device_info, py::arg("csv"), py::arg("out"),
        py::arg("install_dir") = "",
        "Builds the device information database file `out` from its source table; the\n"
        "parts list is read from install_dir/h/pgm_parts.txt (default: the installation's).");
  m.def("generate_flash", &answers::generate_flash, py::arg("csv"), py::arg("out"),
        "Builds the flash database file `out` from its source table.");
}

}  // namespace pgmdev::python
