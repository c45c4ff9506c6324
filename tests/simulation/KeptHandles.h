#pragma once

namespace kifo::testing::simulation {

/// Opening a file with SQLite and reading its schema is a third of a world's time: the SDK does so
/// for each operation. With this on, a handle that it closes is given to its next open of that file
/// on a simulated disk, unless the file was replaced or the disk restarted since. Off at first.
///
/// **Threading:** one thread.
void keepHandles(bool isOn);

}  // namespace kifo::testing::simulation
