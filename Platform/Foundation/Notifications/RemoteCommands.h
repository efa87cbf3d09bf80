#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

/// Takes commands from other processes of the session, over its bus, as long as it lives. Without a
/// bus it takes none, and begins when there is one. Main thread only.
///
/// One process of the session has a service's name at a time: a second one waits for it.
class RemoteCommands {
 public:
  /// Answers a command, on the main run loop; nothing for one that it does not know.
  using Handler = std::function<std::optional<bool>(const std::string& command)>;

  /// `service` is the last part of the name on the bus.
  RemoteCommands(std::string_view service, Handler handler);
  RemoteCommands(const RemoteCommands&) = delete;
  RemoteCommands& operator=(const RemoteCommands&) = delete;
  ~RemoteCommands();

  /// Gives a command to the process that has the service's name, and waits for the answer, two
  /// seconds at most. Throws `std::runtime_error` with the reason if there is none.
  static bool perform(std::string_view service, const std::string& command);

 private:
  class Service;
  std::unique_ptr<Service> service_;
};
