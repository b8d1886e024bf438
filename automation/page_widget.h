/// What start and end of a page mean to a widget that the page created.
#pragma once

#include <memory>

#include "automation/class_list.h"
#include "pelm/page_widget.h"
#include "platform/page/object_context.h"

namespace pelm::automation {

/// The table of a class derived from PageWidget, completed.
inline ClassEntry page_widget_table(ClassEntry entry) {
  entry.info.page_start = [](Object& widget,
                             const std::shared_ptr<page::ScriptingContext>& context) {
    static_cast<PageWidget&>(widget).OnStartPage(context);
  };
  entry.info.page_end = [](Object& widget) { static_cast<PageWidget&>(widget).OnEndPage(); };
  return entry;
}

}  // namespace pelm::automation
