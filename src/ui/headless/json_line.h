// One JSON object on one line, keys in the order they are added.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tf {

std::string json_quote(const std::string& text);

class JsonLine {
 public:
  JsonLine& add(const std::string& key, const std::string& value);
  JsonLine& add(const std::string& key, const char* value) { return add(key, std::string(value)); }
  JsonLine& add(const std::string& key, int64_t value);
  JsonLine& add(const std::string& key, int value) { return add(key, static_cast<int64_t>(value)); }
  JsonLine& add(const std::string& key, bool value);
  JsonLine& add(const std::string& key, double value);  // shortest form that reads back the same
  JsonLine& add(const std::string& key, const std::vector<std::string>& values);
  JsonLine& add_raw(const std::string& key, const std::string& json);
  std::string str() const { return "{" + body_ + "}"; }

 private:
  void key(const std::string& k);
  std::string body_;
};

}  // namespace tf
