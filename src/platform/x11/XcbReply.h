// SPDX-License-Identifier: MIT
#pragma once

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>

namespace Tessaline {

/// Frees memory that libxcb handed over (replies, errors) with free().
struct XcbFree
{
    void operator()(void* memory) const noexcept { std::free(memory); }
};

/// An owned xcb reply; empty when the request failed.
template <typename Reply>
using XcbReply = std::unique_ptr<Reply, XcbFree>;

/// Waits for the reply to `cookie` with `replyFunction` (e.g. xcb_get_property_reply). A failed
/// request yields an empty reply; its error is taken here, so it never reaches the event queue
/// (where Qt would log it).
template <typename ReplyFunction, typename Cookie>
auto xcbReply(ReplyFunction replyFunction, xcb_connection_t* connection, Cookie cookie)
{
    xcb_generic_error_t* error = nullptr;
    auto* reply = replyFunction(connection, cookie, &error);
    std::free(error);
    return XcbReply<std::remove_pointer_t<decltype(reply)>>(reply);
}

} // namespace Tessaline
