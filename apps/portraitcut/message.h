// Messages between the coordinator and its workers: a list of texts over a stream socket.
#ifndef APPS_PORTRAITCUT_MESSAGE_H
#define APPS_PORTRAITCUT_MESSAGE_H

#include <optional>
#include <string>
#include <vector>

using Message = std::vector<std::string>;

// False if the other side is gone.
bool sendMessage(int socket, const Message& message);

// Waits for a whole message; nothing if the other side is gone.
std::optional<Message> receiveMessage(int socket);

// Collects a message that comes in pieces.
class MessageReader {
 public:
  // Reads what is there without waiting. False if the other side is gone.
  bool readSome(int socket);
  // The message, once it is whole.
  std::optional<Message> take();
  // Whether a message, or a part of one, has come that was not taken.
  bool hasBegun() const { return !bytes_.empty(); }

 private:
  std::string bytes_;
};

#endif
