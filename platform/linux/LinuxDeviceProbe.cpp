#include "platform/linux/LinuxDeviceProbe.h"

#include <openssl/sha.h>
#include <sys/statvfs.h>
#include <sys/utsname.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cstdint>
#include <filesystem>
#include <limits>
#include <numeric>
#include <optional>
#include <string_view>
#include <system_error>
#include <vector>

#include "platform/linux/Directories.h"
#include "platform/linux/LinuxClock.h"

// A hash by its plain function: the library's newer interface would first load its providers and
// its configuration, which costs a host's start most of a millisecond and two megabytes.

namespace kifo {
namespace {

/// What a battery holds, in some unit.
struct Charge {
  double now;
  double full;
};

struct Battery {
  std::optional<double> level;    ///< 0.0 to 1.0
  std::optional<Charge> energy;   ///< Watt hours, in millionths.
  std::optional<Charge> current;  ///< Ampere hours, in millionths.
};

std::string textIn(const std::filesystem::path& file) {
  return trimmed(readFile(file.string()).value_or(""));
}

std::optional<double> numberIn(const std::filesystem::path& file) {
  const auto text = textIn(file);
  double number = 0.0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end == text.data()) return std::nullopt;
  return number;
}

std::optional<Charge> chargeIn(const std::filesystem::path& folder, const std::string& kind) {
  const auto now = numberIn(folder / (kind + "_now"));
  const auto full = numberIn(folder / (kind + "_full"));
  if (!now || !full || *full <= 0.0) return std::nullopt;
  return Charge{*now, *full};
}

std::optional<Battery> batteryIn(const std::filesystem::path& folder) {
  if (textIn(folder / "type") != "Battery" || textIn(folder / "scope") == "Device") return {};
  if (textIn(folder / "present") == "0") return {};
  Battery battery{std::nullopt, chargeIn(folder, "energy"), chargeIn(folder, "charge")};
  const auto size = battery.energy ? battery.energy : battery.current;
  if (const auto percent = numberIn(folder / "capacity")) {
    battery.level = *percent / 100.0;
  } else if (size) {
    battery.level = size->now / size->full;
  }
  return battery.level ? std::optional(battery) : std::nullopt;
}

std::vector<Battery> batteriesIn(const std::string& folder) {
  std::vector<Battery> batteries;
  std::error_code error;
  for (std::filesystem::directory_iterator each(folder, error), end; !error && each != end;
       each.increment(error)) {
    if (auto battery = batteryIn(each->path())) batteries.push_back(*battery);
  }
  return batteries;
}

/// None when one of them does not give its capacity in this unit.
std::optional<double> weighted(const std::vector<Battery>& batteries,
                               std::optional<Charge> Battery::*unit) {
  Charge sum{0.0, 0.0};
  for (const Battery& battery : batteries) {
    const auto& charge = battery.*unit;
    if (!charge) return std::nullopt;
    sum = {sum.now + charge->now, sum.full + charge->full};
  }
  return sum.now / sum.full;
}

double mean(const std::vector<Battery>& batteries) {
  const auto add = [](double sum, const Battery& battery) { return sum + *battery.level; };
  return std::accumulate(batteries.begin(), batteries.end(), 0.0, add) /
         static_cast<double>(batteries.size());
}

double levelOf(const std::vector<Battery>& batteries) {
  if (batteries.size() == 1) return *batteries.front().level;
  if (const auto level = weighted(batteries, &Battery::energy)) return *level;
  return weighted(batteries, &Battery::current).value_or(mean(batteries));
}

using Digest = std::array<std::uint8_t, SHA256_DIGEST_LENGTH>;

constexpr auto kNeverOld = std::chrono::steady_clock::duration::max();
constexpr std::string_view kPurpose = "kifo device identifier 1:";
constexpr std::size_t kMachineIdLength = 32;

utsname systemName() {
  utsname name{};
  uname(&name);
  return name;
}

/// The value of a line such as VERSION_ID="12"; empty when there is none.
std::string assignmentIn(const std::string& text, std::string_view key) {
  for (std::size_t start = 0; start < text.size();) {
    const auto end = std::min(text.find('\n', start), text.size());
    const std::string line = trimmed(text.substr(start, end - start));
    start = end + 1;
    if (!line.starts_with(key) || line.substr(key.size()).find('=') != 0) continue;
    const std::string value = line.substr(key.size() + 1);
    const bool quoted = value.size() >= 2 && (value.front() == '"' || value.front() == '\'') &&
                        value.back() == value.front();
    return quoted ? value.substr(1, value.size() - 2) : value;
  }
  return {};
}

std::string systemVersionIn(const std::string& root) {
  for (const auto* file : {"/etc/os-release", "/usr/lib/os-release"}) {
    const auto text = readFile(root + file);
    if (!text) continue;
    if (auto version = assignmentIn(*text, "VERSION_ID"); !version.empty()) return version;
    break;  // a system without version numbers says no more in the other file
  }
  return systemName().release;
}

Digest sha256(const std::string& text) {
  Digest digest{};
  SHA256_CTX context;
  SHA256_Init(&context);
  SHA256_Update(&context, text.data(), text.size());
  SHA256_Final(digest.data(), &context);
  return digest;
}

/// HMAC-SHA256 with a key of at most one block, 64 bytes.
Digest keyedHash(const std::string& key, const std::string& text) {
  std::string inner(SHA256_CBLOCK, '\x36');
  std::string outer(SHA256_CBLOCK, '\x5c');
  for (std::size_t index = 0; index < key.size(); ++index) {
    inner[index] = static_cast<char>(inner[index] ^ key[index]);
    outer[index] = static_cast<char>(outer[index] ^ key[index]);
  }
  const Digest hash = sha256(inner + text);
  return sha256(outer.append(hash.begin(), hash.end()));
}

/// Empty when the machine has none, as in the first moments of its first start.
std::string machineIdIn(const std::string& root) {
  for (const auto* file : {"/etc/machine-id", "/var/lib/dbus/machine-id"}) {
    const auto id = trimmed(readFile(root + file).value_or(""));
    const auto digits = id.find_first_not_of("0123456789abcdefABCDEF");
    if (id.size() == kMachineIdLength && digits == std::string::npos) return id;
  }
  return {};
}

std::optional<std::string> vendorIdentifierOf(const std::string& root, const std::string& program) {
  const std::string machine = machineIdIn(root);
  if (machine.empty()) return std::nullopt;
  const Digest hash = keyedHash(machine, std::string(kPurpose) + program);
  std::array<std::uint8_t, 16> bytes{};
  std::copy_n(hash.begin(), bytes.size(), bytes.begin());
  return uuidOf(bytes);
}

CapacityReading reading(unsigned long long blocks, unsigned long long size) {
  constexpr auto kLargest =
      static_cast<unsigned long long>(std::numeric_limits<std::int64_t>::max());
  if (size == 0) return {CapacityReading::Outcome::missing, 0};
  const auto bytes = blocks > kLargest / size ? kLargest : blocks * size;
  return {CapacityReading::Outcome::known, static_cast<std::int64_t>(bytes)};
}

}  // namespace

float batteryLevelIn(const std::string& folder) {
  const auto batteries = batteriesIn(folder);
  if (batteries.empty()) return -1.0F;
  return static_cast<float>(std::clamp(levelOf(batteries), 0.0, 1.0));
}

LinuxDeviceProbe::LinuxDeviceProbe(std::shared_ptr<SerialQueue> queue, const Options& options)
    : machine_(
          queue, [] { return std::string(systemName().machine); }, kNeverOld),
      systemVersion_(
          queue, [root = options.root] { return systemVersionIn(root); }, kNeverOld),
      vendorIdentifier_(
          queue,
          [root = options.root, program = options.applicationIdentifier] {
            return vendorIdentifierOf(root, program);
          },
          kNeverOld),
      batteryLevel_(
          queue,
          [root = options.root] { return batteryLevelIn(root + "/sys/class/power_supply"); }),
      capacities_(queue, [root = options.root] { return capacitiesOf(root + "/"); }) {}

CapacityReading LinuxDeviceProbe::capacity(VolumeCapacity kind) const {
  const Capacities now = capacities_.get();
  return kind == VolumeCapacity::total ? now.total : now.available;
}

LinuxDeviceProbe::Capacities LinuxDeviceProbe::capacitiesOf(const std::string& path) {
  struct statvfs volume {};
  int code = -1;
  do {
    code = statvfs(path.c_str(), &volume);
  } while (code != 0 && errno == EINTR);
  if (code != 0) return {};
  return {reading(volume.f_blocks, volume.f_frsize), reading(volume.f_bavail, volume.f_frsize)};
}

}  // namespace kifo
