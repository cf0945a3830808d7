#pragma once

namespace kvx::link {

// Protocol numbers as the settings and the link use them.
enum Protocol : int { Iso9141Slow = 1, Kwp2000Slow = 2, Kwp2000Fast = 3, TryAll = 4 };

// The framing a session speaks: ISO 9141-2 or ISO 14230 (KWP2000), however it was woken.
enum class LineKind { Iso9141, Kwp };

} // namespace kvx::link
