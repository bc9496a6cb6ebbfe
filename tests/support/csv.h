// Comma-separated files: the reference estimates.
#pragma once

#include <map>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "support/temp_directory.h"

namespace vardento::test {

using CsvRow = std::map<std::string, std::string>;

// The fields of one line; double quotes around a field are taken off.
inline std::vector<std::string> SplitCsv(const std::string& line) {
  std::vector<std::string> fields(1);
  bool quoted = false;
  for (char c : line) {
    if (c == '"') {
      quoted = !quoted;
    } else if (c == ',' && !quoted) {
      fields.emplace_back();
    } else {
      fields.back() += c;
    }
  }
  return fields;
}

// All rows of the file, by the names in its head line.
inline std::vector<CsvRow> ReadCsv(const std::string& path) {
  std::istringstream text(TempDirectory::ReadFile(path));
  std::string line;
  if (!std::getline(text, line)) throw std::runtime_error("no table in " + path);
  const std::vector<std::string> names = SplitCsv(line);
  std::vector<CsvRow> rows;
  while (std::getline(text, line)) {
    const std::vector<std::string> fields = SplitCsv(line);
    CsvRow row;
    for (std::size_t i = 0; i < names.size() && i < fields.size(); ++i) row[names[i]] = fields[i];
    rows.push_back(std::move(row));
  }
  return rows;
}

}  // namespace vardento::test
