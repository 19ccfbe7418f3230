// The simulated metadata search: managers, searches over the receiver's
// programmes, queries and paged result lists.
#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <memory>
#include <string>

#include "middleware/collection.h"
#include "middleware/search.h"
#include "sim/channel_sim.h"
#include "sim/core.h"
#include "sim/receiver.h"
#include "sim/search_sim.h"

namespace {

using Lock = std::lock_guard<std::recursive_mutex>;
using sim::ProgrammeObject;

const int32_t kStateReady = 0, kStateAborted = 3, kStateError = 4;
const int kEventDelayMs = 5;

struct QueryNode {
  enum Op { kLeaf, kAnd, kOr, kNot } op = kLeaf;
  std::string field, value;
  uint32_t comparison = 0;
  std::shared_ptr<const QueryNode> a, b;
};
using Node = std::shared_ptr<const QueryNode>;

struct QueryObject : sim::Object {
  Node node;
  const char* Type() const override { return "query"; }
};

struct SearchManagerObject : sim::Object {
  const char* Type() const override { return "search-manager"; }
};

struct SearchResultsObject;

struct SearchObject : sim::Object {
  MwHandle manager = 0;
  uint32_t target = 0;
  Node query;
  std::vector<MwHandle> channels;  // constraints; empty: every channel
  bool from_stream = false;        // the programmes of one channel's stream
  MwHandle stream_channel = 0;
  uint32_t start_time = 0;
  // The current page of results, which every result list of the search shows.
  std::vector<MwHandle> page;
  int32_t offset = 0, total = 0;
  std::vector<std::weak_ptr<SearchResultsObject>> views;
  const char* Type() const override { return "search"; }
};

struct SearchResultsObject : sim::ListObject {
  std::shared_ptr<SearchObject> search;
  MwHandle search_handle = 0;
  int32_t offset = 0, total = 0;
  bool aborted = false;
  const char* Type() const override { return "search-results"; }
};

// Every result list of the search shows its current page (holds the lock).
void ShowPage(SearchObject& s) {
  std::vector<std::weak_ptr<SearchResultsObject>> live;
  for (auto& w : s.views) {
    auto view = w.lock();
    if (!view) continue;
    view->items = s.page;
    view->offset = s.offset;
    view->total = s.total;
    live.push_back(w);
  }
  s.views = live;
}

std::string Lower(std::string s) {
  for (char& c : s) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return s;
}

std::string Describe(const Node& n) {
  if (!n) return "";
  static const char* const kComparisons[] = {"=", "!=", ">", ">=", "<", "<=", "contains"};
  switch (n->op) {
    case QueryNode::kAnd: return "(" + Describe(n->a) + " and " + Describe(n->b) + ")";
    case QueryNode::kOr: return "(" + Describe(n->a) + " or " + Describe(n->b) + ")";
    case QueryNode::kNot: return "not " + Describe(n->a);
    case QueryNode::kLeaf: break;
  }
  std::string cmp = n->comparison < 7 ? kComparisons[n->comparison] : "?" + std::to_string(n->comparison);
  return n->field + " " + cmp + " " + n->value;
}

bool IsNumber(const std::string& s, long long* out) {
  if (s.empty()) return false;
  char* end = nullptr;
  *out = std::strtoll(s.c_str(), &end, 10);
  return end && *end == '\0';
}

bool Compare(const std::string& have, uint32_t comparison, const std::string& want) {
  long long h, w;
  int order;
  if (IsNumber(have, &h) && IsNumber(want, &w))
    order = h < w ? -1 : h > w ? 1 : 0;
  else
    order = Lower(have).compare(Lower(want));
  switch (comparison) {
    case 0: return order == 0;
    case 1: return order != 0;
    case 2: return order > 0;
    case 3: return order >= 0;
    case 4: return order < 0;
    case 5: return order <= 0;
    case 6: return Lower(have).find(Lower(want)) != std::string::npos;
    default: return false;
  }
}

// The OIPF metadata fields a query may name ("Programme.name" or "name").
enum Field { kName, kDescription, kLongDescription, kGenre, kChannelId, kProgrammeId, kStartTime,
             kDuration, kParentalRating, kUnknownField };
const char* const kFieldNames[] = {"name", "description", "longdescription", "genre", "channelid",
                                   "programmeid", "starttime", "duration", "parentalrating"};

Field FieldOf(std::string field) {
  field = Lower(field);
  if (field.rfind("programme.", 0) == 0) field = field.substr(10);
  if (field == "title") return kName;
  for (int f = 0; f < kUnknownField; f++)
    if (field == kFieldNames[f]) return static_cast<Field>(f);
  return kUnknownField;
}

bool Numeric(Field f) { return f == kStartTime || f == kDuration || f == kParentalRating; }

// A query that names an unknown field, compares a number field with
// something else than a number, or uses an unknown comparison cannot run.
bool Valid(const Node& n) {
  if (!n) return true;
  if (n->op != QueryNode::kLeaf) return Valid(n->a) && (n->op == QueryNode::kNot || Valid(n->b));
  long long number;
  Field f = FieldOf(n->field);
  return f != kUnknownField && n->comparison <= 6 && (!Numeric(f) || IsNumber(n->value, &number));
}

std::vector<std::string> FieldValues(const ProgrammeObject& p, const std::string& field) {
  switch (FieldOf(field)) {
    case kDescription: return {p.description};
    case kLongDescription: return {p.long_description};
    case kGenre: return p.genre;
    case kChannelId: return {p.channel_id};
    case kProgrammeId: return {p.programme_id};
    case kStartTime: return {std::to_string(p.start_time)};
    case kDuration: return {std::to_string(p.duration)};
    case kParentalRating: {
      std::vector<std::string> values;
      for (MwHandle r : p.ratings)
        if (auto rating = sim::Find<sim::RatingObject>(r)) values.push_back(std::to_string(rating->value));
      return values;
    }
    default: return {p.name};
  }
}

bool Matches(const Node& n, const ProgrammeObject& p) {
  if (!n) return true;
  switch (n->op) {
    case QueryNode::kAnd: return Matches(n->a, p) && Matches(n->b, p);
    case QueryNode::kOr: return Matches(n->a, p) || Matches(n->b, p);
    case QueryNode::kNot: return !Matches(n->a, p);
    case QueryNode::kLeaf: break;
  }
  for (const std::string& v : FieldValues(p, n->field))
    if (Compare(v, n->comparison, n->value)) return true;
  return false;
}

// The programmes the search finds, in channel order (holds the lock).
std::vector<MwHandle> Run(const SearchObject& s) {
  std::vector<MwHandle> found;
  for (MwHandle ch : sim::Rx().channels) {
    if (s.from_stream && ch != s.stream_channel) continue;
    if (!s.channels.empty() && std::find(s.channels.begin(), s.channels.end(), ch) == s.channels.end())
      continue;
    auto channel = sim::Find<sim::ChannelObject>(ch);
    if (!channel) continue;
    for (MwHandle ph : channel->programmes) {
      auto p = sim::Find<ProgrammeObject>(ph);
      if (!p) continue;
      if (s.from_stream && s.start_time != 0 &&
          static_cast<int64_t>(p->start_time) + p->duration <= static_cast<int64_t>(s.start_time))
        continue;
      if (Matches(s.query, *p)) found.push_back(ph);
    }
  }
  return found;
}

void ReportLater(MwHandle manager, MwHandle search, int32_t state) {
  if (sim::AutoEvents()) sim::RaiseMetadataSearch(manager, search, state, true);
}

MwHandle NewQuery(Node node) {
  auto q = std::make_shared<QueryObject>();
  q->node = std::move(node);
  return sim::Register(q, false);
}

Node QueryNodeOf(MwHandle query) {
  auto q = sim::Find<QueryObject>(query);
  return q ? q->node : nullptr;
}

MwHandle Combine(QueryNode::Op op, MwHandle query, MwHandle other) {
  Node a = QueryNodeOf(query);
  Node b = op == QueryNode::kNot ? nullptr : QueryNodeOf(other);
  if (!a || (op != QueryNode::kNot && !b)) return 0;
  auto n = std::make_shared<QueryNode>();
  n->op = op;
  n->a = a;
  n->b = b;
  return NewQuery(n);
}

}  // namespace

namespace sim {

std::string QueryDescription(MwHandle query) {
  Lock lock(Mutex());
  return Describe(QueryNodeOf(query));
}

std::string SearchQueryDescription(MwHandle search) {
  auto s = Find<SearchObject>(search);
  if (!s) return "";
  Lock lock(Mutex());
  return Describe(s->query);
}

void RaiseMetadataSearch(MwHandle manager, MwHandle search, int32_t state, bool on_sim_thread) {
  // Whether the plug-in holds the search decides whether it gets a new
  // reference; the decision and the call are one step under the lock, so a
  // release by the plug-in comes before or after both.
  auto raise = [manager, search, state] {
    Lock lock(Mutex());
    if (!Find<SearchManagerObject>(manager)) return;
    MwHandle given = GiveUnlessHeld(search);
    if (!given) return;
    SIM_EMIT(SearchManager_onMetadataSearch, manager, given, state);
  };
  if (on_sim_thread)
    OnSimThread(raise, kEventDelayMs);
  else
    raise();
}

}  // namespace sim

extern "C" {

// ---- search manager ----
MwHandle MwSearchManagerOpen(void) {
  SIM_CALL(MwHandle);
  return sim::Register(std::make_shared<SearchManagerObject>(), false);
}

MwHandle MwSearchManagerCreateSearch(MwHandle manager, uint32_t target) {
  SIM_CALL(MwHandle, manager, target);
  if (!sim::Find<SearchManagerObject>(manager)) return 0;
  auto s = std::make_shared<SearchObject>();
  s->manager = manager;
  s->target = target;
  return sim::Register(s, false);
}

MwHandle MwSearchManagerGetChannelConfig(MwHandle manager) {
  SIM_CALL(MwHandle, manager);
  if (!sim::Find<SearchManagerObject>(manager)) return 0;
  return sim::NewChannelConfig();
}

// ---- searches ----
int32_t MwSearchGetTarget(MwHandle search) {
  SIM_CALL(int32_t, search);
  return sim::Answer<SearchObject>(search, int32_t{0},
                                   [&](SearchObject& s) { return static_cast<int32_t>(s.target); });
}

// A list showing the search's current page of results (empty until
// MwSearchResultsGetResults fills one).
MwHandle MwSearchGetResult(MwHandle search) {
  SIM_CALL(MwHandle, search);
  auto s = sim::Find<SearchObject>(search);
  if (!s) return 0;
  auto r = std::make_shared<SearchResultsObject>();
  r->lending = sim::Lending::kKeep;  // the plug-in only counts the results
  r->search = s;
  r->search_handle = search;
  Lock lock(sim::Mutex());
  s->views.push_back(r);
  ShowPage(*s);
  return sim::Register(r, false);
}

void MwSearchSetQuery(MwHandle search, MwHandle query) {
  SIM_VOID(search, query);
  auto s = sim::Find<SearchObject>(search);
  if (!s) return;
  Node node = QueryNodeOf(query);
  Lock lock(sim::Mutex());
  s->query = node;
  s->from_stream = false;
}

void MwSearchAddChannelConstraint(MwHandle search, MwHandle channel) {
  SIM_VOID(search, channel);
  auto s = sim::Find<SearchObject>(search);
  if (!s) return;
  Lock lock(sim::Mutex());
  if (channel == 0)
    s->channels.clear();
  else if (sim::Find<sim::ChannelObject>(channel))
    s->channels.push_back(channel);
}

MwHandle MwSearchCreateQuery(MwHandle search, const MwString* field, uint32_t comparison,
                             const MwString* value) {
  SIM_CALL(MwHandle, search, field, comparison, value);
  if (!sim::Find<SearchObject>(search) || !field || !value) return 0;
  auto n = std::make_shared<QueryNode>();
  n->field = sim::Text(field);
  n->comparison = comparison;
  n->value = sim::Text(value);
  return NewQuery(n);
}

void MwSearchFindProgrammesFromStream(MwHandle search, MwHandle channel, uint32_t startTime) {
  SIM_VOID(search, channel, startTime);
  auto s = sim::Find<SearchObject>(search);
  if (!s) return;
  Lock lock(sim::Mutex());
  s->from_stream = true;
  s->stream_channel = channel;
  s->start_time = startTime;
  s->query = nullptr;
}

// ---- queries ----
MwHandle MwQueryAnd(MwHandle query, MwHandle other) {
  SIM_CALL(MwHandle, query, other);
  return Combine(QueryNode::kAnd, query, other);
}

MwHandle MwQueryOr(MwHandle query, MwHandle other) {
  SIM_CALL(MwHandle, query, other);
  return Combine(QueryNode::kOr, query, other);
}

MwHandle MwQueryNot(MwHandle query) {
  SIM_CALL(MwHandle, query);
  return Combine(QueryNode::kNot, query, 0);
}

// ---- result lists ----
int32_t MwSearchResultsGetResults(MwHandle list, uint32_t offset, uint32_t count) {
  SIM_CALL(int32_t, list, offset, count);
  auto r = sim::Find<SearchResultsObject>(list);
  if (!r) return 0;
  MwHandle manager, search;
  bool valid;
  {
    Lock lock(sim::Mutex());
    SearchObject& s = *r->search;
    valid = Valid(s.query);
    std::vector<MwHandle> found = valid ? Run(s) : std::vector<MwHandle>();
    size_t from = std::min<size_t>(offset, found.size());
    size_t to = from + std::min<size_t>(count, found.size() - from);
    s.page.assign(found.begin() + static_cast<std::ptrdiff_t>(from),
                  found.begin() + static_cast<std::ptrdiff_t>(to));
    s.offset = static_cast<int32_t>(offset);
    s.total = static_cast<int32_t>(found.size());
    ShowPage(s);
    r->aborted = false;
    manager = s.manager;
    search = r->search_handle;
  }
  // A query that cannot run ends in the error state, with no results.
  ReportLater(manager, search, valid ? kStateReady : kStateError);
  return 1;
}

void MwSearchResultsAbort(MwHandle list) {
  SIM_VOID(list);
  auto r = sim::Find<SearchResultsObject>(list);
  if (!r) return;
  MwHandle manager, search;
  {
    Lock lock(sim::Mutex());
    r->aborted = true;
    manager = r->search->manager;
    search = r->search_handle;
  }
  ReportLater(manager, search, kStateAborted);
}

int32_t MwSearchResultsGetOffset(MwHandle list) {
  SIM_CALL(int32_t, list);
  return sim::Answer<SearchResultsObject>(list, int32_t{0},
                                          [&](SearchResultsObject& r) { return r.offset; });
}

int32_t MwSearchResultsGetTotalSize(MwHandle list) {
  SIM_CALL(int32_t, list);
  return sim::Answer<SearchResultsObject>(list, int32_t{0},
                                          [&](SearchResultsObject& r) { return r.total; });
}

}  // extern "C"
