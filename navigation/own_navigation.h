#pragma once
// Whether the navigation the browser reports next began in the control itself (a Show method, a history
// command, an intercepted TOVEVENT) rather than in the page. The next top-level BeforeNavigate takes the
// answer; from then on navigations are the page's own again. Standard C++ only.
#include <utility>

namespace tov {

class OwnNavigation {
public:
    void Begin() noexcept { m_bOwnNavigation = true; }
    // The answer for the BeforeNavigate at hand, given once.
    [[nodiscard]] bool Take() noexcept { return std::exchange(m_bOwnNavigation, false); }

private:
    bool m_bOwnNavigation = false;
};

} // namespace tov
