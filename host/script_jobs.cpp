// A queue in the order of arrival.
#include "host/script_jobs.h"

#include <js/CallAndConstruct.h>
#include <js/Exception.h>
#include <js/GlobalObject.h>
#include <js/Realm.h>
#include <js/ValueArray.h>
#include <jsapi.h>

#include "host/script_errors.h"

namespace pelm::host::script {

Jobs::Jobs(JSContext* cx) : waiting_(cx), rejected_(cx) {
  JS::SetJobQueue(cx, this);
  JS::SetPromiseRejectionTrackerCallback(cx, track_rejection, this);
}

bool Jobs::run_all(JSContext* cx) {
  JS::RootedObject job(cx);
  JS::RootedValue ignored(cx);
  while (next_ < waiting_.length()) {
    job = waiting_[next_++];
    if (next_ == waiting_.length()) {
      waiting_.clear();
      next_ = 0;
    }
    const JSAutoRealm realm(cx, job);
    if (JS::Call(cx, JS::UndefinedHandleValue, job, JS::HandleValueArray::empty(), &ignored)) {
      continue;
    }
    // A job keeps what its function throws in a promise; what comes here is memory or a stop.
    return false;
  }
  return true;
}

std::optional<PageFailure> Jobs::unhandled_rejection(JSContext* cx) {
  if (rejected_.empty()) return std::nullopt;
  const JS::RootedObject promise(cx, rejected_[0]);
  const JS::RootedValue reason(cx, JS::GetPromiseResult(promise));
  const JS::RootedObject site(cx, JS::GetPromiseResolutionSite(promise));
  return failure_of(cx, reason, site);
}

void Jobs::clear() {
  waiting_.clear();
  rejected_.clear();
  next_ = 0;
}

JSObject* Jobs::getIncumbentGlobal(JSContext* cx) { return JS::CurrentGlobalOrNull(cx); }

bool Jobs::enqueuePromiseJob(JSContext* cx, JS::HandleObject, JS::HandleObject job,
                             JS::HandleObject, JS::HandleObject) {
  if (waiting_.append(job)) return true;
  JS_ReportOutOfMemory(cx);
  return false;
}

void Jobs::runJobs(JSContext* cx) { run_all(cx); }

bool Jobs::empty() const { return waiting_.empty(); }

js::UniquePtr<JS::JobQueue::SavedJobQueue> Jobs::saveJobQueue(JSContext* cx) {
  // Only a debugger asks, and pages have none.
  JS_ReportErrorASCII(cx, "debugger not supported");
  return nullptr;
}

void Jobs::track_rejection(JSContext* cx, bool, JS::HandleObject promise,
                           JS::PromiseRejectionHandlingState state, void* self) {
  auto& rejected = static_cast<Jobs*>(self)->rejected_;
  if (state == JS::PromiseRejectionHandlingState::Unhandled) {
    if (!rejected.append(promise)) JS_ReportOutOfMemory(cx);
    return;
  }
  for (JSObject** at = rejected.begin(); at != rejected.end(); ++at) {
    if (*at != promise) continue;
    rejected.erase(at);
    return;
  }
}

}  // namespace pelm::host::script
