// The compiled half of the `brinecast` package: tables in, tables out, one call per table, so
// that Python never loops over analyses. The Python half (brinecast/__init__.py) turns
// DataFrames and keywords into these calls.
#include "FrameColumns.h"
#include "FrameReader.h"
#include "FrameReport.h"
#include "FrameSpeciator.h"

#include "brinecast/readers/InputError.h"

#include <korvane/KorvaneError.h>

#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <algorithm>
#include <unordered_map>

namespace py = pybind11;
using namespace korvane::Brinecast;

namespace {

/// A column of numbers handed to numpy without a copy: the array owns the vector.
py::array numberArray(std::vector<double>&& values) {
    auto* owned = new std::vector<double>(std::move(values));
    py::capsule free(owned, [](void* p) { delete static_cast<std::vector<double>*>(p); });
    return py::array_t<double>(static_cast<py::ssize_t>(owned->size()), owned->data(), free);
}

/// A column of text as a numpy object array. A status or solver column holds a handful of
/// distinct words over many rows: each becomes one Python string, shared by its rows.
py::array textArray(const std::vector<std::string>& values) {
    py::array array(py::dtype("object"), std::vector<py::ssize_t>{static_cast<py::ssize_t>(values.size())});
    std::unordered_map<std::string, py::str> made;
    auto* cells = static_cast<PyObject**>(array.mutable_data());
    for (std::size_t i = 0; i < values.size(); ++i) {
        auto it = made.find(values[i]);
        if (it == made.end()) it = made.emplace(values[i], py::str(values[i])).first;
        PyObject* old = cells[i];
        cells[i] = it->second.inc_ref().ptr();
        Py_XDECREF(old);
    }
    return array;
}

py::list speciateColumns(const python::FrameSpeciator& speciator, std::vector<std::string> labels,
                         const py::dict& numbers, const py::dict& texts, const std::string& unit,
                         const std::string& temperatureUnit, const std::string& pressureUnit,
                         unsigned threads) {
    python::FrameColumns columns;
    columns.rows = labels.size();
    columns.labels = std::move(labels);
    columns.unit = unit;
    columns.temperatureUnit = temperatureUnit;
    columns.pressureUnit = pressureUnit;
    std::vector<py::array_t<double, py::array::c_style | py::array::forcecast>> keep;
    for (const auto& [name, values] : numbers) {
        keep.push_back(py::array_t<double, py::array::c_style | py::array::forcecast>::ensure(values));
        if (!keep.back() || keep.back().ndim() != 1 || static_cast<std::size_t>(keep.back().size()) != columns.rows) {
            throw cli::InputError("column \"" + py::str(name).cast<std::string>() +
                                          "\" is not a column of numbers as long as the table");
        }
        columns.numbers.emplace_back(py::str(name).cast<std::string>(), keep.back().data());
    }
    for (const auto& [name, values] : texts) {
        columns.texts.emplace_back(py::str(name).cast<std::string>(), values.cast<std::vector<std::string>>());
    }
    // Parts of some thousand rows: big enough to keep every core busy, small enough that the
    // rows in flight are reused memory rather than fresh pages.
    constexpr std::size_t kPartRows = 8192;
    python::FrameReport report(columns.rows);
    {
        py::gil_scoped_release released;
        python::FrameReader(speciator.names(), columns);  // a bad column refuses the table at once
        for (std::size_t first = 0; first < columns.rows; first += kPartRows) {
            const std::size_t count = std::min(kPartRows, columns.rows - first);
            report.add(first, speciator.speciate(columns, first, count, threads));
        }
    }
    py::list out;
    for (python::FrameReport::Column& c : report.take()) {
        out.append(py::make_tuple(c.name, c.text ? textArray(c.texts) : numberArray(std::move(c.numbers))));
    }
    return out;
}

}  // namespace

PYBIND11_MODULE(_brinecast, m) {
    m.doc() = "Speciation and pH of produced water, from tables of analyses.";

    py::register_exception<korvane::KorvaneError>(m, "KorvaneError", PyExc_RuntimeError);
    py::register_exception<cli::InputError>(m, "InputError", PyExc_ValueError);

    py::enum_<Method>(m, "Method")
        .value("specified", Method::Specified)
        .value("robust", Method::Robust)
        .value("auto", Method::Auto);

    py::enum_<ActivityModel>(m, "ActivityModel")
        .value("ideal", ActivityModel::Ideal)
        .value("davies", ActivityModel::Davies)
        .value("debye_huckel", ActivityModel::DebyeHuckel)
        .value("pitzer", ActivityModel::Pitzer);

    py::class_<python::FrameSettings>(m, "Settings")
        .def(py::init([] { return python::FrameSpeciator::defaults(); }),
             "The command line's settings.")
        .def_property(
            "method", [](const python::FrameSettings& s) { return s.solve.method; },
            [](python::FrameSettings& s, Method v) { s.solve.method = v; })
        .def_property(
            "activity", [](const python::FrameSettings& s) { return s.activity.word(); },
            [](python::FrameSettings& s, const std::string& v) { s.activity = cli::ActivityChoice::named(v); })
        .def_property(
            "macinnes", [](const python::FrameSettings& s) { return s.solve.macInnes; },
            [](python::FrameSettings& s, bool v) { s.solve.macInnes = v; })
        .def_property(
            "tolerance", [](const python::FrameSettings& s) { return s.solve.tolerance; },
            [](python::FrameSettings& s, double v) { s.solve.tolerance = v; })
        .def_property(
            "iteration_limit", [](const python::FrameSettings& s) { return s.solve.iterationLimit; },
            [](python::FrameSettings& s, std::uint64_t v) { s.solve.iterationLimit = v; })
        .def_readwrite("engine_dir", &python::FrameSettings::engineDirectory)
        .def_readwrite("balance_with", &python::FrameSettings::balanceWith);

    py::class_<python::FrameSpeciator>(m, "FrameSpeciator")
        .def(py::init<python::FrameSettings>())
        .def_property_readonly("settings", &python::FrameSpeciator::settings)
        .def("speciate_columns", &speciateColumns, py::arg("labels"), py::arg("numbers"),
             py::arg("texts"), py::arg("unit"), py::arg("temperature_unit"),
             py::arg("pressure_unit"), py::arg("threads"));

    m.attr("text_columns") = python::FrameReader::textColumns();
}
