#pragma once

namespace quellton {

// Registration of the program to start when the user logs in.
class LoginItem {
public:
    virtual ~LoginItem() = default;
    virtual bool isRegistered() = 0;
    // Both return false on failure; the model ignores it.
    virtual bool registerItem() = 0;
    virtual bool unregisterItem() = 0;
};

}  // namespace quellton
