#include "frame/platform.h"

#include "frame/pending_writes.h"

namespace tf {

Answer Platform::message_box(const MessageBoxRequest& request) {
  write_pending();
  return show_message_box(request);
}

std::string Platform::input_box(const InputBoxRequest& request) {
  write_pending();
  return show_input_box(request);
}

std::string Platform::file_dialog(const FileDialogRequest& request) {
  write_pending();
  return show_file_dialog(request);
}

}  // namespace tf
