// A run that is past its fit pass, with arrays and work files filled in by the test itself, so that
// every printed number is known beforehand.
#pragma once

#include <deque>
#include <sstream>
#include <string>
#include <vector>

#include "data/work_files.h"
#include "report/report_context.h"
#include "support/test_run.h"

namespace vardento::test {

class SmallRun : public TestRun {
 public:
  SmallRun(int persons, int items, int groups = 1) : TestRun("NI=2\n&END\n", false) {
    ControlSettings& s = run.DraftSettings();
    s.NI = items;
    s.NAMLEN = 6;
    run.inForce.ITLEN = 6;
    s.TITLE = "Fruit";
    s.groupsText = "1";
    run.NPERS = run.personsRead = persons;
    run.results.ActivePersons = persons;
    run.results.ActiveItems = items;
    run.results.ActiveCategories = 2;
    run.NGROUPS = groups;
    run.LongestLabel = 6;
    MakeItems(items, groups);
    MakePersons(persons);
    OpenWorkFiles(run);
    static_cast<void>(run.stores.itemLabels.Create(run.workDirectory.NameOf("ZJJ"), 6));
    for (int n = 1; n <= persons; ++n) {
      SetPerson(n, "Pers" + std::to_string(n), {});
      SetResponses(n, "");
    }
    for (int i = 1; i <= items; ++i) SetItemLabel(i, "Item" + std::to_string(i));
    OpenReport();
  }

  void SetPerson(int n, const std::string& label, const PersonWorkRecord& record) {
    WritePersonName(run, n, label);
    WritePersonWork(run, n, record);
  }
  // A digit for each item, any other character and what is not given: missing.
  void SetResponses(int n, std::string digits) {
    digits.resize(static_cast<std::size_t>(run.settings.NI), ' ');
    std::vector<std::uint8_t> row;
    for (const char c : digits) {
      row.push_back(c >= '0' && c <= '9' ? static_cast<std::uint8_t>(c - '0') : 255);
    }
    WriteScoredRow(run, n, row.data());
  }
  void SetItemLabel(int i, const std::string& label) {
    static_cast<void>(run.stores.itemLabels.Write(i, (label + "      ").substr(0, 6).data()));
  }
  // Weights of 1 for one side.
  void GiveItemWeights() { run.given.ItemWeight = Floats(run.settings.NI, 1.0F); }
  void GivePersonWeights() { run.given.PersonWeight = Floats(run.NPERS, 1.0F); }
  // The report's lines so far, without the control column; a page start keeps its form feed.
  std::vector<std::string> ReportLines() { return LinesOf(Report()); }
  static std::vector<std::string> LinesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
  }
  Array1<float> Floats(int count, float value = 0) {
    floats_.emplace_back(static_cast<std::size_t>(count), value);
    return {floats_.back().data(), count};
  }
  Array1<double> Doubles(int count) {
    doubles_.emplace_back(static_cast<std::size_t>(count), 0.0);
    return {doubles_.back().data(), count};
  }

  ReportContext context{.run = run, .persons = {}, .items = {}};

 private:
  template <class T>
  Array1<T> Cut(std::deque<std::vector<T>>& store, int count, T value) {
    store.emplace_back(static_cast<std::size_t>(count), value);
    return {store.back().data(), count};
  }
  void MakeItems(int items, int groups) {
    RunArrays& a = run.arrays;
    for (Array1<float>* array :
         {&a.ItemMeasure, &a.ItemScore, &a.ItemCount, &a.ItemTotalScore, &a.ItemTotalCount,
          &a.ItemInfit, &a.ItemOutfit, &a.ItemInfitZ, &a.ItemOutfitZ, &a.ItemCorrelation}) {
      *array = Floats(items);
    }
    a.ScoredRow = Cut(bytes_, items, std::uint8_t{255});
    a.ItemError = Doubles(items);
    a.ItemDisplacement = Doubles(items);
    a.ItemStatus = Cut(statuses_, items, Status::Active);
    a.ItemGroup = Cut(integers_, items, std::int32_t{1});
    a.GroupStart = Cut(integers_, groups, std::int32_t{1});
    a.GroupTop = Cut(integers_, groups, std::int32_t{1});
    a.GroupModel = Cut(models_, groups, Model::Rating);
    // A group has the positions of ten categories, of which two are in use.
    const int positions = 10 * groups;
    run.NCATS = positions;
    run.MAXCAT = 1;
    a.StepCalibration = Floats(positions);
    a.StepStatus = Cut(integers_, positions, std::int32_t{1});
    a.CodeToCategory = Cut(integers_, positions, std::int32_t{-3});
    for (int g = 1; g <= groups; ++g) {
      a.GroupStart[g] = 10 * (g - 1) + 1;
      for (int k = 0; k <= 1; ++k) a.CodeToCategory[a.GroupStart[g] + k] = k;
    }
    a.CategoryToCode = Cut(integers_, positions, std::int32_t{0});
    a.CategoryHalfPoint = Doubles(positions);
    a.CategoryThurstone = Doubles(positions);
  }
  void MakePersons(int persons) {
    RunArrays& a = run.arrays;
    for (Array1<float>* array :
         {&a.PersonMeasure, &a.PersonTotalScore, &a.PersonTotalCount, &a.PersonInfit,
          &a.PersonOutfit, &a.PersonInfitZ, &a.PersonOutfitZ}) {
      *array = Floats(persons);
    }
    a.PersonStatus = Cut(statuses_, persons, Status::Active);
  }

  std::deque<std::vector<float>> floats_;
  std::deque<std::vector<double>> doubles_;
  std::deque<std::vector<std::int32_t>> integers_;
  std::deque<std::vector<std::uint8_t>> bytes_;
  std::deque<std::vector<StatusByte>> statuses_;
  std::deque<std::vector<Model>> models_;
};

}  // namespace vardento::test
