// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/platform/device_path.hpp>

#include <vector>

namespace mezalith::platform::detail {

/// Collects the drawn pieces of one polyline and adds them to a path.
class PathPieces {
  public:
    /// Draws from `from`, where the last piece ends unless `interrupt` was called since, to `to`.
    void draw(MzPoint from, MzPoint to) {
        if (!isDrawing_) {
            pieces_.push_back({from});
            isDrawing_ = true;
        }
        pieces_.back().push_back(to);
    }

    /// What comes next is a piece of its own.
    void interrupt() { isDrawing_ = false; }

    /// Of a polyline that is not closed, or whose beginning was not drawn.
    void addOpen(DevicePath& path) {
        for (const std::vector<MzPoint>& piece : pieces_) {
            path.addLines(piece, {});
        }
        pieces_.clear();
        interrupt();
    }

    /// Of a closed polyline that begins and ends at `start`, drawn from there on: the pieces that
    /// meet there are one.
    void addRing(DevicePath& path, MzPoint start) {
        const bool meets = isDrawing_ && !pieces_.empty() && pieces_.front().front().x == start.x &&
                           pieces_.front().front().y == start.y;
        if (meets && pieces_.size() == 1) {
            pieces_.front().pop_back();
            addOpen(path);
            path.close();
            return;
        }
        if (meets) {
            std::vector<MzPoint>& last = pieces_.back();
            last.insert(last.end(), pieces_.front().begin() + 1, pieces_.front().end());
            pieces_.erase(pieces_.begin());
        }
        addOpen(path);
    }

  private:
    std::vector<std::vector<MzPoint>> pieces_;
    bool isDrawing_ = false;  ///< whether the last piece goes on
};

}  // namespace mezalith::platform::detail
