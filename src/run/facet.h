// The two sides of the data, and the words that the user has set for them.
#pragma once

#include <string>

#include "run/control_settings.h"

namespace vardento {

enum class Facet { Persons, Items };

inline Facet OtherFacet(Facet facet) {
  return facet == Facet::Persons ? Facet::Items : Facet::Persons;
}

// "PERSON" or "ITEM", and the words for several of them.
inline const std::string& SingularLabel(const ControlSettings& settings, Facet facet) {
  return facet == Facet::Persons ? settings.PERSON_LABEL : settings.ITEM_LABEL;
}
inline const std::string& PluralLabel(const ControlSettings& settings, Facet facet) {
  return facet == Facet::Persons ? settings.PERSONS_LABEL : settings.ITEMS_LABEL;
}

}  // namespace vardento
