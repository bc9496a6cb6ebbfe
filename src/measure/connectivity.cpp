#include "measure/connectivity.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "data/work_files.h"
#include "measure/estimation.h"
#include "run/messages.h"

namespace vardento {

namespace {

constexpr int kOutside = -1;               // of persons who take no part
constexpr long long kStepsToPump = 65536;  // between two looks for messages
constexpr int kStepsOfRow = 256;           // what reading a row counts for

std::vector<LinkItem> ListLinkItems(const Run& run) {
  std::vector<LinkItem> items;
  for (const ItemInHand& hand : MakeItemWalk(run).active) {
    items.push_back({hand.codeToCategory, hand.item, hand.tables.top});
  }
  return items;
}

}  // namespace

ConnectivityScan::ConnectivityScan(Run& run)
    : run_(run), items_(ListLinkItems(run)), up_(items_.size()), down_(items_.size()) {}

bool ConnectivityScan::Allocate() {
  BlockPlan plan;
  plan.Add(personSubset_, run_.NPERS).Add(itemSubset_, run_.settings.NI);
  plan.Add(reach_, run_.settings.NI);
  if (!TryTakeBlock(run_, plan, block_)) return false;
  for (int n = 1; n <= run_.NPERS; ++n) {
    if (!IsActive(WithoutCompleteFlag(run_.arrays.PersonStatus[n]))) personSubset_[n] = kOutside;
  }
  return true;
}

bool ConnectivityScan::Scan() {
  for (int seed = LowestOpen(); seed <= run_.NPERS && !stopped_; seed = LowestOpen()) {
    if (subset_ > 0) MakeIndex();
    GatherSubset(seed);
  }
  return !stopped_;
}

// The lowest person that is in no subset yet, NPERS + 1 when there is none.
int ConnectivityScan::LowestOpen() {
  while (lowestOpen_ <= run_.NPERS && personSubset_[lowestOpen_] != 0) ++lowestOpen_;
  return lowestOpen_;
}

void ConnectivityScan::GatherSubset(int seed) {
  BeginSubset(seed);
  for (;;) {
    lastChange_ = 0;
    index_ ? SweepIndex() : SweepRows(seed);
    const int firstLeft = LowestOpen();
    // Whoever was left out since the last change has met the frame as it is now.
    if (stopped_ || firstLeft > run_.NPERS || lastChange_ < firstLeft) return;
    MakeIndex();
  }
}

void ConnectivityScan::BeginSubset(int seed) {
  ++subset_;
  for (const std::size_t place : seen_) reach_[static_cast<int>(place) + 1] = Unseen;
  for (const std::size_t w : words_) {
    up_.ClearWord(w);
    down_.ClearWord(w);
  }
  seen_.clear();
  words_.clear();
  unlinked_.resize(items_.size());
  std::iota(unlinked_.begin(), unlinked_.end(), std::size_t{0});
  seedAnchored_ = false;
  Join(seed, ReadScoredRow(run_, seed));
  WantsStop(kStepsOfRow);
}

// One sweep over everybody left, reading each one's responses.
void ConnectivityScan::SweepRows(int seed) {
  for (int n = seed + 1; n <= run_.NPERS; ++n) {
    if (personSubset_[n] != 0) continue;
    const std::uint8_t* row = ReadScoredRow(run_, n);
    if (RowCanJoin(n, row)) Join(n, row);
    if (WantsStop(kStepsOfRow)) return;
  }
}

// The same sweep by classes of persons: those who can't join are passed over unread, and it ends as
// soon as nobody can.
void ConnectivityScan::SweepIndex() {
  int n = index_->FirstJoiner(FrameInHand());
  int idle = 0;
  while (n != 0 && n <= run_.NPERS) {
    if (WantsStop(1)) return;
    if (personSubset_[n] == 0 && index_->CanJoin(n, FrameInHand())) {
      Join(n, ReadScoredRow(run_, n));
      idle = 0;
    } else if (++idle > index_->OpenClasses()) {
      // As many steps as asking all classes takes: ask them where to go on.
      idle = 0;
      const int next = index_->FirstJoiner(FrameInHand());
      if (next == 0) return;
      if (next > n) {
        n = next;
        continue;
      }
    }
    ++n;
  }
}

bool ConnectivityScan::IsAnchoredPerson(int person) const {
  return IsAnchored(WithoutCompleteFlag(run_.arrays.PersonStatus[person]));
}

bool ConnectivityScan::RowCanJoin(int person, const std::uint8_t* row) const {
  // Two anchored persons share a frame: their distance is given, whatever they answered.
  if (seedAnchored_ && IsAnchoredPerson(person)) return true;
  bool up = false, down = false;
  for (const std::size_t place : seen_) {
    const int x = items_[place].CategoryIn(row);
    if (x < 0) continue;
    const char reach = reach_[static_cast<int>(place) + 1];
    up = up || (reach != High && x > 0);
    down = down || (reach != Low && x < items_[place].top);
    if (up && down) return true;
  }
  return false;
}

void ConnectivityScan::Join(int person, const std::uint8_t* row) {
  personSubset_[person] = subset_;
  if (index_) index_->Remove(person);
  if (IsAnchoredPerson(person) && !seedAnchored_) {
    seedAnchored_ = true;
    lastChange_ = person;
  }
  Extend(person, row);
}

// What the newcomer adds to the frame. A middle category ties an item from both sides at once, the
// two ends by two persons, the lowest seen first: an item seen at its top alone and then at its
// lowest falls back to Low until somebody is above that. The settled form, on the side of a warning
// too many.
void ConnectivityScan::Extend(int person, const std::uint8_t* row) {
  bool changed = false;
  std::size_t kept = 0;
  for (const std::size_t place : unlinked_) {
    const auto old = static_cast<Reach>(reach_[static_cast<int>(place) + 1]);
    const int x = items_[place].CategoryIn(row);
    Reach reach = old;
    if (x >= 0) reach = x < 1 ? Low : x < items_[place].top || old == Low ? Both : High;
    if (reach != old) {
      SetReach(place, reach);
      changed = true;
    }
    if (reach != Both) unlinked_[kept++] = place;
  }
  unlinked_.resize(kept);
  if (changed) lastChange_ = person;
}

// Keeps the bit sets that the index is asked with in step with the reach.
void ConnectivityScan::SetReach(std::size_t place, Reach reach) {
  char& stored = reach_[static_cast<int>(place) + 1];
  const std::size_t word = place / 64;
  if (stored == Unseen) {
    seen_.push_back(place);
    if ((up_.Word(word) | down_.Word(word)) == 0) words_.push_back(word);
  }
  stored = reach;
  reach == High ? up_.Remove(place) : up_.Add(place);
  reach == Low ? down_.Remove(place) : down_.Add(place);
  if (reach == Both) itemSubset_[items_[place].item] = subset_;
}

// Data that one sweep connects never need the index; it is made once, of those who are left.
void ConnectivityScan::MakeIndex() {
  if (std::exchange(indexTried_, true)) return;
  int open = 0;
  for (int n = LowestOpen(); n <= run_.NPERS; ++n) open += personSubset_[n] == 0 ? 1 : 0;
  auto index = std::make_unique<ResponseIndex>(items_);
  if (!index->Allocate(run_, open)) return;
  for (int n = run_.NPERS; n >= LowestOpen(); --n) {
    if (personSubset_[n] != 0) continue;
    index->Add(n, ReadScoredRow(run_, n), IsAnchoredPerson(n));
    if (WantsStop(kStepsOfRow)) return;
  }
  index_ = std::move(index);
}

ResponseIndex::Frame ConnectivityScan::FrameInHand() const {
  return {up_, down_, words_, seedAnchored_};
}

// At worst the check is quadratic in persons: it has to let the user in.
bool ConnectivityScan::WantsStop(long long steps) {
  steps_ += steps;
  if (steps_ >= kStepsToPump) {
    steps_ = 0;
    PumpMessages(run_);
    stopped_ = stopped_ || run_.StopRequest == 1;
  }
  return stopped_;
}

namespace {

// The first person and the first item of every subset. Subsets are numbered in the order of their
// first persons.
std::vector<Subset> FirstMembers(const Run& run, const ConnectivityScan& scan) {
  std::vector<Subset> subsets(static_cast<std::size_t>(scan.SubsetCount()));
  const auto note = [&subsets](int subset, int entry, int Subset::*first) {
    if (subset < 1) return;
    int& noted = subsets[static_cast<std::size_t>(subset - 1)].*first;
    if (noted == 0) noted = entry;
  };
  for (int n = 1; n <= run.NPERS; ++n) note(scan.SubsetOfPerson(n), n, &Subset::firstPerson);
  for (int i = 1; i <= run.settings.NI; ++i) note(scan.SubsetOfItem(i), i, &Subset::firstItem);
  return subsets;
}

}  // namespace

void CheckConnectivity(Run& run) {
  ConnectivityScan scan(run);
  if (scan.Allocate() && scan.Scan()) run.results.subsets = FirstMembers(run, scan);
}

}  // namespace vardento
