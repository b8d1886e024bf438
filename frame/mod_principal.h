/// Start-up of a thread.
#pragma once

namespace pelm::frame {

struct ThreadSlots;

/// Runs `Main` unless it has run on this thread. Every public class calls it when created. Returns
/// `thread_slots()`.
ThreadSlots& start_thread();

/// Creates the thread's OID allocator.
void Main();

}  // namespace pelm::frame
