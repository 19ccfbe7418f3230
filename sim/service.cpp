// What the current service carries besides audio and video: its AIT and
// its object carousel, as files in a folder.
#include <cstdlib>
#include <memory>
#include <string>

#include "sim/receiver.h"

namespace sim {
namespace {

bool Hex(const std::string& text, int32_t* out) {
  if (text.empty() || text.size() > 8) return false;
  char* end = nullptr;
  unsigned long v = strtoul(text.c_str(), &end, 16);
  if (*end) return false;
  *out = static_cast<int32_t>(v);
  return true;
}

std::shared_ptr<ChannelObject> Current() { return Find<ChannelObject>(CurrentChannel()); }

}  // namespace

bool FindAitEntry(const std::string& org_app, AitEntry* out) {
  std::lock_guard<std::recursive_mutex> lock(Mutex());
  auto channel = Current();
  if (!channel) return false;
  int32_t org = 0, app = 0;
  size_t dot = org_app.find('.');
  bool by_id = !org_app.empty();
  if (by_id && (dot == std::string::npos || !Hex(org_app.substr(0, dot), &org) ||
                !Hex(org_app.substr(dot + 1), &app)))
    return false;
  for (const AitEntry& e : channel->ait) {
    if (by_id ? (e.org_id == org && e.app_id == app) : e.autostart) {
      *out = e;
      return true;
    }
  }
  return false;
}

bool NamesCurrentService(const std::string& url, int32_t* tag) {
  *tag = -1;
  const std::string scheme = "dvb://";
  auto channel = Current();
  if (!channel || url.compare(0, scheme.size(), scheme) != 0) return false;
  std::string host = url.substr(scheme.size(), url.find_first_of("/;?$#", scheme.size()) - scheme.size());
  if (host == "current" || host == "current.ait") return true;  // the service's own carousel
  int32_t ids[4] = {-1, -1, -1, -1};
  size_t start = 0, n = 0;
  while (n < 4) {
    size_t end = host.find('.', start);
    if (!Hex(host.substr(start, end == std::string::npos ? std::string::npos : end - start), &ids[n++])) return false;
    if (end == std::string::npos) break;
    start = end + 1;
  }
  *tag = ids[3];
  return n >= 3 && ids[0] == channel->onid && ids[1] == channel->tsid && ids[2] == channel->sid;
}

StreamEventObject FindStreamEventObject(const std::string& url, int32_t* tag) {
  int32_t url_tag;
  if (!NamesCurrentService(url, &url_tag)) return kNoPath;
  size_t slash = url.find('/', 6);
  std::string path = slash == std::string::npos ? "" : url.substr(slash);
  path = path.substr(0, path.find_first_of(";?#"));
  std::lock_guard<std::recursive_mutex> lock(Mutex());
  auto channel = Current();
  if (path.empty() || path == "/" || !channel || channel->stream_event_objects.empty()) return kNoPath;
  if (channel->carousel_tag >= 0 && url_tag >= 0 && url_tag != channel->carousel_tag) return kNoObject;
  auto it = channel->stream_event_objects.find(path);
  if (it == channel->stream_event_objects.end()) return kNoObject;
  *tag = it->second;
  return kObject;
}

std::string CarouselFile(const std::string& url) {
  int32_t tag;
  // dvb://current.ait/ORG.APP names an application, not a file.
  if (url.compare(0, 17, "dvb://current.ait") == 0 || !NamesCurrentService(url, &tag)) return "";
  size_t slash = url.find('/', 6);
  std::string path = slash == std::string::npos ? "/" : url.substr(slash);
  path = path.substr(0, path.find_first_of("?#"));
  if (path.find("/../") != std::string::npos || (path.size() >= 3 && path.compare(path.size() - 3, 3, "/..") == 0))
    return "";
  std::lock_guard<std::recursive_mutex> lock(Mutex());
  auto channel = Current();
  if (!channel || channel->carousel.empty()) return "";
  return channel->carousel + path;  // a directory's path when the URL names one
}

}  // namespace sim
