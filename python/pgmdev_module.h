// What the parts of the Python module share: JSON answers as Python objects, the errors.
#pragma once

#include <pybind11/pybind11.h>

#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>

#include "answers.h"

namespace py = pybind11;

namespace pgmdev::python {

// A question without an answer (unknown name, no record): raised as LookupError.
class NOT_FOUND : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// The sentence the tool prints for `error`, "did you mean" included.
std::string sentence(const answers::QueryError& error);

// Runs a look-up: a QueryError becomes a LookupError with the same sentence.
template <class ASK>
auto looking_up(ASK ask) {
  try {
    return ask();
  } catch (const answers::QueryError& error) {
    throw NOT_FOUND(sentence(error));
  }
}

// A JSON answer as the Python value json.loads gives (dicts keep the answer's key order).
py::object to_python(const nlohmann::json& json);
py::object to_python(const nlohmann::ordered_json& json);

// "spi" or "nand", in any case; a ValueError otherwise.
std::string hps_kind_name(const std::string& kind);

void bind_errors(py::module_& m);
void bind_names(py::module_& m);
void bind_device(py::module_& m);
void bind_flash(py::module_& m);
void bind_sfdp(py::module_& m);
void bind_hps(py::module_& m);
void bind_generators(py::module_& m);

}  // namespace pgmdev::python
