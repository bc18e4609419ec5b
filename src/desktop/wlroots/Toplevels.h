#pragma once

#include <QObject>

#include <memory>
#include <vector>

#include "Protocols.h"

namespace quellton::wayland {

// The compositor's application windows (wlr-foreign-toplevel-management): which outputs a
// fullscreen or maximized window hides completely.
class Toplevels : public QObject {
    Q_OBJECT
public:
    explicit Toplevels(zwlr_foreign_toplevel_manager_v1* manager, QObject* parent = nullptr);
    ~Toplevels() override;

    bool hides(wl_output* output) const;
    // The output is going away; windows no longer count as on it.
    void forget(wl_output* output);

signals:
    void changed();

private:
    struct Window;
    static void created(void* data, zwlr_foreign_toplevel_manager_v1*, zwlr_foreign_toplevel_handle_v1* handle);
    static void finished(void* data, zwlr_foreign_toplevel_manager_v1*);
    void remove(Window* window);

    zwlr_foreign_toplevel_manager_v1* manager_;
    std::vector<std::unique_ptr<Window>> windows_;
};

}  // namespace quellton::wayland
