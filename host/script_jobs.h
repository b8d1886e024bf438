/// The jobs of promises: what `await` leaves to be done. They run when the page's script is
/// through, and none outlives its page.
#pragma once

#include <js/GCVector.h>
#include <js/Promise.h>
#include <js/RootingAPI.h>
#include <js/TypeDecls.h>

#include <optional>

#include "host/page_failure.h"

namespace pelm::host::script {

class Jobs final : public JS::JobQueue {
 public:
  explicit Jobs(JSContext* cx);

  /// Until none is left; false when one of them stopped the script.
  bool run_all(JSContext* cx);
  /// What the first promise was rejected with that nobody handled.
  std::optional<PageFailure> unhandled_rejection(JSContext* cx);
  void clear();

  JSObject* getIncumbentGlobal(JSContext* cx) override;
  bool enqueuePromiseJob(JSContext* cx, JS::HandleObject promise, JS::HandleObject job,
                         JS::HandleObject allocation_site,
                         JS::HandleObject incumbent_global) override;
  void runJobs(JSContext* cx) override;
  bool empty() const override;
  js::UniquePtr<SavedJobQueue> saveJobQueue(JSContext* cx) override;

 private:
  static void track_rejection(JSContext* cx, bool muted, JS::HandleObject promise,
                              JS::PromiseRejectionHandlingState state, void* self);

  JS::PersistentRootedObjectVector waiting_;
  JS::PersistentRootedObjectVector rejected_;
  std::size_t next_ = 0;
};

}  // namespace pelm::host::script
