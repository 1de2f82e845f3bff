// SPDX-License-Identifier: Apache-2.0
#pragma once

/**
 * A way to a private member, for states that no file produces. An explicit instantiation may name
 * any member, so it can hand the pointer to a friend function:
 *
 *     struct Level { using Type = int Tank::*; friend Type memberOf(Level); };
 *     template struct PrivateMember<Level, &Tank::mLevel>;
 *     ... tank.*memberOf(Level{}) ...
 *
 * The name must be declared in this namespace, or the two friends are two functions.
 */
namespace android::ogm::test {

template <typename Name, typename Name::Type member>
struct PrivateMember {
    friend typename Name::Type memberOf(Name) { return member; }
};

}  // namespace android::ogm::test
