#include "frame/pending_writes.h"

#include <utility>
#include <vector>

#include "frame/conventions.h"

namespace tf {

namespace {
struct Pending {
  const void* owner;
  std::function<void(const void*)> write_out;
};
std::vector<Pending>& pending() {
  static std::vector<Pending> all;
  return all;
}
bool writing = false;  // a write that closes a file does not start another round
}  // namespace

void add_pending_writes(const void* owner, std::function<void(const void*)> write_out) {
  pending().push_back({owner, std::move(write_out)});
}

void remove_pending_writes(const void* owner) {
  auto& all = pending();
  std::erase_if(all, [owner](const Pending& p) { return p.owner == owner; });
}

void write_pending(const void* closing) {
  if (writing) return;
  writing = true;
  for (const auto& p : std::vector<Pending>(pending())) resume_next([&] { p.write_out(closing); });
  writing = false;
}

}  // namespace tf
