// The data inspector and the struct view without their windows: what they show, and the threads
// that compute it. Part of the shell; the commands (pane_commands.h) work on it.
#pragma once

#include "app/pane_host.h"

#include <string>
#include <utility>
#include <vector>

namespace kvx {

/// Main thread only. Its end waits for the threads'.
struct AnalysisPanes {
    /// `paneHost` must outlive the panes.
    explicit AnalysisPanes(PaneHost& paneHost) : host(paneHost) {}

    PaneHost& host;
    InspectorModel inspector;
    StructViewModel structView;
    InspectorWorker inspectorWorker{ComputeInspectorRows,
                                    [this](std::unique_ptr<PostedInspectorRows>&& rows) {
                                        return host.PostInspectorRows(std::move(rows));
                                    }};
    StructViewWorker structViewWorker{EvaluateStruct,
                                      [this](std::unique_ptr<PostedStructRows>&& rows) {
                                          return host.PostStructRows(std::move(rows));
                                      }};
};

} // namespace kvx
