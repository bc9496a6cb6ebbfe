// What a map of persons and items shows: where each of them stands on the measure scale, what it
// weighs, and where the two distributions have their middle. All measures in the user's units; a
// picture or a file can be made of it as well as the rows of text that the report lays out.
#pragma once

#include <vector>

#include "run/facet.h"
#include "run/run.h"

namespace vardento {

// An extreme entry stands at an end of the scale, wherever its estimated measure lies.
enum class MapPlace : char { AtMeasure, AtTop, AtBottom };

struct MapPoint {
  int entry = 0;
  float measure = 0;
  float weight = 1;  // of PWEIGHT= or IWEIGHT=; never below 0
  MapPlace place = MapPlace::AtMeasure;
};

struct MapSide {
  std::vector<MapPoint> points;  // those with a measure, by entry number
  // Of the active ones, by weight; without any, there is no mean.
  bool hasMean = false;
  double mean = 0, sd = 0;
};

// Where a person succeeds as often as not at the lowest and at the highest step of an item.
struct StepPoints {
  double lowest = 0, highest = 0;
  // The item has one step and stands beside items of other groups: its two points say nothing that
  // its measure doesn't.
  bool dichotomous = false;
};

struct VariableMap {
  bool mirrored = false;
  MapSide persons, items;
  std::vector<StepPoints> steps;  // of items.points, in the same order

  const MapSide& Side(Facet facet) const { return facet == Facet::Persons ? persons : items; }
};

// `mirrored`: the items as the complement of the persons. Each measure is reflected in UMEAN=, and
// the two ends of the scale change places.
VariableMap MakeVariableMap(const Run& run, bool mirrored);

// Some group has more than two categories.
bool HasSeveralSteps(const Run& run);

// Where the categories of the items begin on the measure scale.
enum class ZoneKind {
  ExpectedScore,  // the expected score is half a point below the category
  Thurstone,      // the category or a higher one is as likely as not
};

struct ZonePoint {
  int entry = 0;
  int category = 0;  // place in ZoneMap::categories
  float measure = 0;
  MapPlace place = MapPlace::AtMeasure;
};

struct ZoneCategory {
  int value = 0;  // as the data are scored
  int group = 0;  // the first group that has it
};

struct ZoneMap {
  std::vector<ZoneCategory> categories;  // by value, those of any group
  std::vector<ZonePoint> points;         // by item, then by step: one for each step
};

// The landmarks of the categories must have been computed (ComputeCategoryPoints).
ZoneMap MakeZoneMap(const Run& run, ZoneKind kind);

}  // namespace vardento
