// The connectivity check: which persons and items can be measured in one frame of reference.
// CheckConnectivity (measure/estimation.h) runs it.
#pragma once

#include <memory>
#include <vector>

#include "measure/response_index.h"
#include "run/run.h"

namespace vardento {

// Gathers subsets, each from the first person that is in none yet. A person joins a subset who is
// above its frame on some item and below it on some item: above the lowest category where the
// subset is not seen at the top only, below the highest where it is not seen at the bottom only.
//
// Draw an arrow from the winner of each response to its loser: from the person to the item for a
// step passed, back for a step missed, both ways in a middle category. Estimates are finite and
// unique when all persons and items can be reached from each other (Haberman 1977; Fischer 1981).
// The check asks for more: each person must be tied both ways by its own responses to those before,
// and a chain that leads back by way of several persons is not looked for. So it can warn of data
// that hold together, but finds none whole that fall apart. Only active persons and items take
// part.
class ConnectivityScan {
 public:
  explicit ConnectivityScan(Run& run);
  bool Allocate();  // NPERS and NI marks; false when there is no memory for it
  bool Scan();      // false when the user stopped it: the subsets are then not complete
  int SubsetCount() const { return subset_; }
  // 0 or below: in no subset. An item belongs to the last subset that was seen on both sides of it.
  int SubsetOfPerson(int person) const { return personSubset_[person]; }
  int SubsetOfItem(int item) const { return itemSubset_[item]; }

 private:
  // Where the subset in hand has been seen on an item; places are those of items_.
  enum Reach : char { Unseen, Low, High, Both };

  void BeginSubset(int seed);
  void GatherSubset(int seed);
  void SweepRows(int seed);
  void SweepIndex();
  bool RowCanJoin(int person, const std::uint8_t* row) const;
  void Join(int person, const std::uint8_t* row);
  void Extend(int person, const std::uint8_t* row);
  void SetReach(std::size_t place, Reach reach);
  int LowestOpen();
  void MakeIndex();
  ResponseIndex::Frame FrameInHand() const;
  bool IsAnchoredPerson(int person) const;
  bool WantsStop(long long steps);

  Run& run_;
  std::vector<LinkItem> items_;  // the active ones, from NI down to 1
  MemoryBlock block_;
  Array1<std::int32_t> personSubset_;  // kOutside for persons who don't take part
  Array1<std::int32_t> itemSubset_;
  Array1<char> reach_;  // by place + 1, of the subset in hand

  // Of the subset in hand.
  int subset_ = 0;                     // its number
  bool seedAnchored_ = false;          // an anchored person is in it
  int lastChange_ = 0;                 // the last person of the sweep in hand who changed the frame
  std::vector<std::size_t> seen_;      // places not Unseen
  std::vector<std::size_t> unlinked_;  // places not Both
  ItemSet up_, down_;                  // places not High, not Low, of those seen
  std::vector<std::size_t> words_;     // of up_ and down_ that hold any place

  std::unique_ptr<ResponseIndex> index_;  // null: rows are read, for want of memory or of need
  bool indexTried_ = false;
  int lowestOpen_ = 1;   // nobody before is without a subset
  long long steps_ = 0;  // since messages were last looked for
  bool stopped_ = false;
};

}  // namespace vardento
