// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

// Who has the frame for itself at present: whatever else scans stands aside meanwhile, since the
// layout of pages is the same for all.
class FrameUsers
{
public:
    enum User : unsigned { LightScreen = 1, LightCheck = 2 };

    // True if by this somebody has it, or nobody has any more.
    bool set(User user, bool has)
    {
        const bool before = any();
        users = has ? users | user : users & ~unsigned(user);
        return any() != before;
    }
    bool any() const { return users != 0; }
    bool has(User user) const { return (users & user) != 0; }

private:
    unsigned users = 0;
};
