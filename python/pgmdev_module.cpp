// The Python module pgmdev: where it finds its data, the error mapping, names, the catalogue
// and device records.
#include "pgmdev_module.h"

#include <dlfcn.h>
#include <pybind11/eval.h>
#include <pybind11/stl.h>

#include <filesystem>

#include "device_record.h"
#include "failure.h"
#include "names.h"
#include "output.h"
#include "pgmdev_mgr.h"
#include "platform.h"
#include "suggest.h"

namespace fs = std::filesystem;

namespace pgmdev::python {

namespace {

// Python text run at import: the classes scripts see, written where they read best. The
// named tuples are made on first use: importing collections and building them cost more
// than the rest of the import together.
const char* const PYTHON_CLASSES = R"py(
class InternalError(Exception):
    """A broken invariant of the library or a corrupt data file.

    condition: the check that failed; module: its source file; line: where. The message
    is the sentence the pgmdev tool prints for it."""

    def __init__(self, condition, module, line, message=None):
        super().__init__(message or f"{condition} ({module} line {line})")
        self.condition = condition
        self.module = module
        self.line = line

class DeviceRecord(dict):
    """A device information record: column name -> value.

    query says what was asked ("part ZQ160M8C6"), found_by which fallback of the index
    tables found the record, row_kind which row it is (part, device, pcf, family) and
    number its position in the database file (from 1)."""

    query = ""
    found_by = ""
    row_kind = ""
    number = None

# Fields named as the keys of the tool's JSON lists.
_NAMED_TUPLES = {
    "Family": ("enum family", "A family of the catalogue: its enumeration value and name."),
    "Device": ("enum device family", "A device of the catalogue and its family."),
    "Part": ("enum part device package speed temperature released preferred hidden",
             "A part of the catalogue: its device, package, grades and flags."),
}

def __getattr__(name):
    if name not in _NAMED_TUPLES:
        raise AttributeError(f"module 'pgmdev' has no attribute '{name}'")
    import collections
    fields, doc = _NAMED_TUPLES[name]
    kind = collections.namedtuple(name, fields, module=__name__)
    kind.__doc__ = doc
    globals()[name] = kind
    return kind

def __dir__():
    return sorted(set(globals()) | set(_NAMED_TUPLES))
)py";

// An installed module finds share/pgmdev from its own folder, unless configured otherwise.
// Set in the environment, not as an override: a script may still point elsewhere later, and
// the tools it runs find the same data.
void locate_data() {
  Dl_info info{};
  if (dladdr(reinterpret_cast<void*>(&locate_data), &info) == 0 || info.dli_fname == nullptr) {
    return;
  }
  std::error_code error;
  const fs::path share =
      (fs::absolute(info.dli_fname, error).parent_path() / PGMDEV_SHARE_FROM_PYDIR)
          .lexically_normal();
  if (!fs::is_directory(share / "programmer", error)) return;  // the build tree: its default
  for (const char* key : {"PGMDEV_DEVICE_DB_DIR", "PGMDEV_INSTALL_DIR"}) {
    if (cfg_get_value(key).empty()) {
      py::module_::import("os").attr("environ")[py::str(key)] = share.string();
    }
  }
}

py::dict paths() {
  py::dict folders;
  folders["device_db"] = gen_get_device_db_fullpath();
  folders["install"] = gen_get_korvel_path();
  folders["module"] = gen_get_module_path();
  return folders;
}

py::object optional_text(const std::string& text) {
  return text.empty() ? py::object(py::none()) : py::object(py::str(text));
}

// An OPN hash as the tool reads it: an int is the hash itself, in hex digits (any size or
// sign, for the tool's check to refuse); text goes as given.
std::string hash_text(const py::handle& hash) {
  if (!py::isinstance<py::int_>(hash)) return hash.cast<std::string>();
  return py::str(py::module_::import("builtins").attr("format")(hash, "X")).cast<std::string>();
}

void bind_opn(py::module_& m) {
  m.def(
      "opn",
      [](std::optional<unsigned long long> slot, const py::object& hash) {
        if (slot.has_value() == !hash.is_none()) {
          throw answers::QueryError("give an OPN enumeration or an OPN hash");
        }
        const bool by_hash = !slot;
        const std::string text = by_hash ? hash_text(hash) : std::to_string(*slot);
        if (by_hash) answers::parse_opn_hash(text);  // bad text is a ValueError, not a LookupError
        return to_python(looking_up([&] { return answers::opn_json(text, by_hash); }));
      },
      py::arg("slot") = py::none(), py::kw_only(), py::arg("hash") = py::none(),
      "The part in an OPN slot, or the part with a 48-bit OPN hash (an int, or hex text),\n"
      "as `pgmdev opn --json` answers: {'opn_enum', 'part', 'opn_hash'}. LookupError when\n"
      "no part is there; ValueError for text that is not a hash.");
  m.def(
      "opn_slot",
      [](const std::string& part) -> py::object {
        const unsigned long slot = PGMDEV_MGR::get_opn_enum(part);
        return slot == INVALID_DWORD ? py::object(py::none()) : py::object(py::int_(slot));
      },
      py::arg("part"), "The first OPN slot of a part (name as given), or None.");
  m.def(
      "opn_hash",
      [](const std::string& part) -> py::object {
        const unsigned long long hash = PGMDEV_MGR::get_opn_hash(part);
        return hash == ~0ULL ? py::object(py::none()) : py::object(py::int_(hash));
      },
      py::arg("part"), "The 48-bit OPN hash of a known part, or None.");
  m.def(
      "part_of_hash",
      [](const py::int_& hash) {
        return optional_text(
            PGMDEV_MGR::get_opn_from_hash(answers::parse_opn_hash(hash_text(hash))));
      },
      py::arg("hash"), "The part whose OPN hash is `hash`, or None.");
}

void bind_catalog(py::module_& m) {
  m.def(
      "families",
      [m]() {
        py::list families;
        for (py::handle entry : to_python(answers::families_json())) {
          families.append(m.attr("Family")(**entry));
        }
        return families;
      },
      "Every family of the catalogue, as Family named tuples.");
  m.def(
      "devices",
      [m](const std::string& family) {
        py::list devices;
        for (py::handle entry :
             to_python(looking_up([&] { return answers::devices_json(family); }))) {
          devices.append(m.attr("Device")(**entry));
        }
        return devices;
      },
      py::arg("family") = "", "The devices of one family (every family when empty).");
  m.def(
      "parts",
      [m](const std::string& family, const std::string& device, const std::string& package,
          const std::string& speed, const std::string& temperature, const std::string& contains,
          bool released, bool preferred, bool hidden) {
        const answers::PartFilter filter{family,   device,   package,   speed, temperature,
                                         contains, released, preferred, hidden};
        py::list parts;
        for (py::handle entry :
             to_python(looking_up([&] { return answers::parts_json(filter); }))) {
          parts.append(m.attr("Part")(**entry));
        }
        return parts;
      },
      py::kw_only(), py::arg("family") = "", py::arg("device") = "", py::arg("package") = "",
      py::arg("speed") = "", py::arg("temperature") = "", py::arg("contains") = "",
      py::arg("released") = false, py::arg("preferred") = false, py::arg("hidden") = false,
      "The parts that match every filter (empty: any), in part order, as Part named tuples.\n"
      "`contains` is a case-blind part of the name; hidden parts only with hidden=True.");
}

}  // namespace

std::string sentence(const answers::QueryError& error) {
  return error.what() + answers::did_you_mean(error.suggestions());
}

namespace {

// The Python value of a JSON value, built directly: importing Python's json module to read
// the text back would cost a first call more than the answer itself.
template <class JSON>
py::object python_value(const JSON& json) {
  switch (json.type()) {
    case nlohmann::json::value_t::object: {
      py::dict object;
      for (const auto& [key, value] : json.items()) object[py::str(key)] = python_value(value);
      return std::move(object);
    }
    case nlohmann::json::value_t::array: {
      py::list array;
      for (const auto& value : json) array.append(python_value(value));
      return std::move(array);
    }
    case nlohmann::json::value_t::string:
      return py::str(json.template get_ref<const std::string&>());
    case nlohmann::json::value_t::boolean:
      return py::bool_(json.template get<bool>());
    case nlohmann::json::value_t::number_integer:
      return py::int_(json.template get<std::int64_t>());
    case nlohmann::json::value_t::number_unsigned:
      return py::int_(json.template get<std::uint64_t>());
    case nlohmann::json::value_t::number_float:
      return py::float_(json.template get<double>());
    default:
      return py::none();
  }
}

}  // namespace

namespace {

// A dict of an answer's fields, built straight from them.
py::dict python_dict(const answers::ANSWER_FIELDS& fields) {
  py::dict dict;
  for (const auto& [key, value] : fields) {
    dict[key] = std::visit(
        [](const auto& v) -> py::object {
          if constexpr (std::is_same_v<std::decay_t<decltype(v)>, std::monostate>) {
            return py::none();
          } else {
            return py::cast(v);
          }
        },
        value);
  }
  return dict;
}

}  // namespace

py::object to_python(const nlohmann::json& json) { return python_value(json); }

py::object to_python(const nlohmann::ordered_json& json) { return python_value(json); }

namespace {

// The library's report of a broken check: InternalError with the tool's sentence for it.
void raise_internal(py::handle type, const MSG_INTERNAL_ERROR_INFO& info) {
  const answers::Failure described =
      answers::describe_library_failure(info.condition, info.source_file, info.line, info.context);
  // A bad cell of a source table is bad input, as the tool's exit code 1 says.
  if (described.exit_code == answers::EXIT_USER_ERROR) {
    PyErr_SetString(PyExc_ValueError, described.message.c_str());
    return;
  }
  py::object raised = type(info.condition, info.source_file, info.line, described.message);
  PyErr_SetObject(type.ptr(), raised.ptr());
}

// A report the library goes on after: one about a data file stops the call with
// InternalError (a script would otherwise read on without the file's records); any other
// becomes a RuntimeWarning with the tool's sentence.
void on_soft_report(const MSG_INTERNAL_ERROR_INFO& info) {
  if (info.fatal) return;  // reaches the caller as an exception
  const answers::Failure described =
      answers::describe_library_failure(info.condition, info.source_file, info.line, info.context);
  if (described.exit_code == answers::EXIT_DATA_FILE) throw MSG_INTERNAL_ERROR_EXCEPTION(info);
  if (PyErr_WarnEx(PyExc_RuntimeWarning, described.message.c_str(), 1) != 0) {
    throw py::error_already_set();  // warnings turned into errors
  }
}

// The tool's warnings and notices, and what the library prints, as RuntimeWarnings.
void warn_in_python(const std::string& kind, const std::string& text) {
  const std::string message = kind == "warning" ? text : kind + ": " + text;
  if (PyErr_WarnEx(PyExc_RuntimeWarning, message.c_str(), 1) != 0) {
    throw py::error_already_set();  // warnings turned into errors
  }
}

}  // namespace

void bind_errors(py::module_& m) {
  MSG_INTERNAL_ERROR::set_hook(on_soft_report);
  answers::set_message_sink(warn_in_python);
  py::exec(PYTHON_CLASSES, m.attr("__dict__"));
  static py::handle internal_error = py::object(m.attr("InternalError")).release();
  // By value: the translator type pybind11 takes.
  // NOLINTNEXTLINE(performance-unnecessary-value-param)
  py::register_exception_translator([](std::exception_ptr thrown) {
    try {
      if (thrown) std::rethrow_exception(thrown);
    } catch (const MSG_INTERNAL_ERROR_EXCEPTION& error) {
      raise_internal(internal_error, error.info());
    } catch (const NOT_FOUND& error) {
      PyErr_SetString(PyExc_LookupError, error.what());
    } catch (const answers::DataFileError& error) {
      PyErr_SetString(PyExc_FileNotFoundError, error.what());
    } catch (const answers::QueryError& error) {
      PyErr_SetString(PyExc_ValueError, sentence(error).c_str());
    } catch (const std::out_of_range& error) {
      // Thrown by the library without a report (a short line of the parts list): the place it
      // stood is still known, and the tool's sentence names it.
      const answers::CONTEXT where = MSG_CONTEXT::unwound();
      if (where.empty()) throw;
      PyErr_SetString(
          PyExc_ValueError,
          answers::describe_library_failure(error.what(), "", 0, where).message.c_str());
    }
  });
}

void bind_names(py::module_& m) {
  m.def(
      "name",
      [](const std::string& text) {
        return python_dict(looking_up([&] { return answers::name_fields(text); }));
      },
      py::arg("name"),
      "A part, package, programmer or device name in every naming scheme, as\n"
      "`pgmdev name --json` answers (package_name, pgm_name, pcf names, family,\n"
      "possible_full_name, opn_enum, opn_hash...). LookupError for an unknown name.");
  bind_opn(m);
  bind_catalog(m);
}

void bind_device(py::module_& m) {
  m.def(
      "device",
      [m](const std::string& family, const std::string& device, const std::string& part,
          const std::string& pcf) {
        std::string given;
        for (const auto& [name, value] :
             {std::pair<const char*, const std::string&>{"family", family},
              {"device", device},
              {"part", part},
              {"pcf", pcf}}) {
          if (!value.empty()) given += (given.empty() ? "" : ", ") + std::string(name) + "=";
        }
        if (given.empty()) {
          throw answers::QueryError("say what to look up: family=, device=, part= or pcf=");
        }
        if (given.find(',') != std::string::npos) {
          throw answers::QueryError("give one of family=, device=, part= or pcf=, not " + given);
        }
        answers::require_device_database();
        PGMDEV_DEV_INFO_MANAGER manager(false, 0);
        const py::object answer = to_python(looking_up([&] {
          return answers::device_json(manager, {family, device, part, pcf});
        }));
        py::object record = m.attr("DeviceRecord")(answer["record"]);
        for (const char* key : {"query", "found_by", "row_kind", "number"}) {
          record.attr(key) = answer[key];
        }
        return record;
      },
      py::kw_only(), py::arg("family") = "", py::arg("device") = "", py::arg("part") = "",
      py::arg("pcf") = "",
      "The device information record of a family, device, part or pcf (device file) name\n"
      "(exactly one), as a DeviceRecord (a dict by column name; .found_by says which\n"
      "fallback found it). LookupError for an unknown name or when no row answers.");
}

}  // namespace pgmdev::python

PYBIND11_MODULE(pgmdev, m) {
  using namespace pgmdev::python;
  m.doc() =
      "pgmdev: the device data of the FPGA/CPLD programmer for scripts.\n\n"
      "Names and OPN slots (name, opn, opn_slot, opn_hash, part_of_hash), the catalogue\n"
      "(families, devices, parts), device records (device), serial flash (FlashManager,\n"
      "flash_encode, flash_decode, flash_check, flash_seal, sfdp_read, sfdp_derive), HPS\n"
      "boot flash (hps_list, hps_fields, hps_add, hps_remove) and the two generators.\n\n"
      "Bad input raises ValueError and a question without an answer LookupError, with the\n"
      "sentence the pgmdev tool prints; a broken invariant or a corrupt data file raises\n"
      "InternalError, a missing data file FileNotFoundError; the library's other warnings\n"
      "are RuntimeWarnings.\n"
      "The data is found as the tool finds it (PGMDEV_DEVICE_DB_DIR and friends); an\n"
      "installed module uses the share/pgmdev of its own prefix.";
  locate_data();
  m.def("paths", &paths,
        "The folders in use: device_db (databases), install (parts list) and module\n"
        "(the user's pgm_flash.ini).");
  m.def("version", &ver_get_version, "The library's version and build.");
  bind_errors(m);
  bind_names(m);
  bind_device(m);
  bind_flash(m);
  bind_sfdp(m);
  bind_hps(m);
  bind_generators(m);
}
