// A run that stands right before its intake: settings for a few items, one group, everybody active.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "control/item_specifications.h"
#include "data/data_reader.h"
#include "data/work_files.h"
#include "run/control_settings.h"
#include "support/test_run.h"

namespace vardento::test {

// The texts with "|" between them.
inline std::string Joined(const std::vector<std::string>& texts) {
  std::string all;
  for (const std::string& text : texts) all += text + "|";
  if (!all.empty()) all.pop_back();
  return all;
}

class DataRun : public TestRun {
 public:
  // `controlText` is what follows the last control line; labels come first unless INUMB is 'Y'.
  DataRun(std::string_view controlText, int NI, bool batch = true)
      : TestRun(controlText, batch), settings(run.DraftSettings()) {
    settings.NI = NI;
    settings.ITEM1 = 1;
    settings.ITLEN = 300;
    settings.INUMB = true;
    SetCodes("01", 1);
    SetGroups(std::vector<int>(static_cast<std::size_t>(NI), 1));
    SetCapacity(10000);
  }

  void SetCodes(std::string_view codes, int width) {
    settings.CODES = codes;
    settings.CODES_LENGTH = static_cast<int>(codes.size());
    settings.XWIDE = width;
    settings.CATEGS = settings.CODES_LENGTH / width;
  }

  // One group number for each item, from 1 and without gaps.
  void SetGroups(const std::vector<int>& groups) {
    itemGroup_.assign(groups.begin(), groups.end());
    itemStatus_.assign(groups.size(), Status::Active);
    scoredRow_.assign(groups.size(), 0);
    run.NGROUPS = *std::max_element(groups.begin(), groups.end());
    groupTop_.assign(static_cast<std::size_t>(run.NGROUPS), 0);
    groupStart_ = groupTop_;
    run.arrays.ItemGroup = {itemGroup_.data(), settings.NI};
    run.given.ItemStatus = {itemStatus_.data(), settings.NI};
    run.arrays.ScoredRow = {scoredRow_.data(), settings.NI};
    run.given.GroupTop = {groupTop_.data(), run.NGROUPS};
    run.arrays.GroupStart = {groupStart_.data(), run.NGROUPS};
  }

  void SetCapacity(int persons) {
    run.personCapacity = persons;
    BlockPlan plan;
    plan.Add(run.given.PersonStatus, persons);
    if (!plan.Allocate(run.memory, run.personStatusTrial)) std::abort();
    for (StatusByte& status : run.given.PersonStatus) status = Status::Active;
  }

  // The intake with the settings as they stand.
  void Read() {
    run.FixSettings();
    run.inForce.scoring = DecideRescoring(run.settings);
    ReadData(run);
  }

  // The persons' rows: a category number or score as a digit, missing as ".".
  std::vector<std::string> CodedRows() {
    std::vector<std::uint8_t> row(static_cast<std::size_t>(settings.NI));
    return Rows([&](int p) {
      ReadCodedRow(run, p, row.data());
      return row.data();
    });
  }
  std::vector<std::string> ScoredRows() {
    return Rows([&](int p) { return ReadScoredRow(run, p); });
  }
  std::vector<std::string> Labels() {
    std::vector<std::string> labels;
    for (int p = 1; p <= run.NPERS; ++p) labels.push_back(ReadPersonName(run, p));
    return labels;
  }

  ControlSettings& settings;

 private:
  template <class Read>
  std::vector<std::string> Rows(Read read) {
    std::vector<std::string> rows;
    for (int p = 1; p <= run.NPERS; ++p) {
      const std::uint8_t* row = read(p);
      std::string text;
      for (int i = 0; i < settings.NI; ++i) {
        text.push_back(row[i] == 255 ? '.' : static_cast<char>('0' + row[i]));
      }
      rows.push_back(text);
    }
    return rows;
  }

  std::vector<std::int32_t> itemGroup_, groupTop_, groupStart_;
  std::vector<StatusByte> itemStatus_;
  std::vector<std::uint8_t> scoredRow_;
};

}  // namespace vardento::test
