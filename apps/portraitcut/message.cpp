#include "message.h"

#include <sys/socket.h>

#include <cerrno>
#include <cstdint>
#include <cstring>

namespace {

constexpr size_t kNumberBytes = sizeof(uint64_t);

void putNumber(std::string& bytes, uint64_t number) {
  bytes.append(reinterpret_cast<const char*>(&number), kNumberBytes);
}

uint64_t numberAt(const std::string& bytes, size_t at) {
  uint64_t number;
  std::memcpy(&number, bytes.data() + at, kNumberBytes);
  return number;
}

// Length of all that follows, count of texts, then each with its length. Both ends are the same program, so the
// numbers are in the machine's own form.
std::string pack(const Message& message) {
  std::string body;
  putNumber(body, message.size());
  for (const std::string& text : message) {
    putNumber(body, text.size());
    body += text;
  }
  std::string bytes;
  putNumber(bytes, body.size());
  return bytes + body;
}

Message unpack(const std::string& bytes) {
  size_t at = kNumberBytes;
  Message message(numberAt(bytes, at));
  at += kNumberBytes;
  for (std::string& text : message) {
    const size_t size = numberAt(bytes, at);
    text = bytes.substr(at + kNumberBytes, size);
    at += kNumberBytes + size;
  }
  return message;
}

bool receiveExactly(int socket, char* to, size_t size) {
  while (size > 0) {
    const ssize_t count = recv(socket, to, size, 0);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return false;
    to += count;
    size -= static_cast<size_t>(count);
  }
  return true;
}

}  // namespace

bool sendMessage(int socket, const Message& message) {
  const std::string bytes = pack(message);
  for (size_t sent = 0; sent < bytes.size();) {
    const ssize_t count = send(socket, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return false;
    sent += static_cast<size_t>(count);
  }
  return true;
}

std::optional<Message> receiveMessage(int socket) {
  std::string bytes(kNumberBytes, 0);
  if (!receiveExactly(socket, bytes.data(), kNumberBytes)) return std::nullopt;
  bytes.resize(kNumberBytes + numberAt(bytes, 0));
  if (!receiveExactly(socket, bytes.data() + kNumberBytes, bytes.size() - kNumberBytes)) return std::nullopt;
  return unpack(bytes);
}

bool MessageReader::readSome(int socket) {
  char part[1 << 16];
  const ssize_t count = recv(socket, part, sizeof part, MSG_DONTWAIT);
  if (count < 0) return errno == EINTR || errno == EAGAIN;
  bytes_.append(part, static_cast<size_t>(count));
  return count > 0;
}

std::optional<Message> MessageReader::take() {
  if (bytes_.size() < kNumberBytes || bytes_.size() - kNumberBytes < numberAt(bytes_, 0)) return std::nullopt;
  Message message = unpack(bytes_);
  bytes_.clear();
  return message;
}
