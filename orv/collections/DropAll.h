#pragma once

namespace orv::collections::internal {

/// Calls `drop()`, which drops one object and says whether there was one, until there is none left:
/// an object that throws on its way out does not keep the others.
template <class Drop>
void dropAll(Drop drop)
{
    struct Rest {
        Drop& dropOne;

        ~Rest() noexcept(false)
        {
            while (dropOne()) {
            }
        }
    };
    const Rest rest{drop};
    while (drop()) {
    }
}

} // namespace orv::collections::internal
