/// The script engine's life in the process: what all of its contexts share.
#pragma once

struct JSContext;  // the engine's
struct JSRuntime;

namespace pelm::host::script {

/// Makes a context for this thread, which may hold `heap_bytes`; it ends on this thread too. Starts
/// the engine when it is the first. Throws std::runtime_error when there is no memory for it.
JSContext* new_context(unsigned heap_bytes);

}  // namespace pelm::host::script
