# frames.sh - sourced by the jobs: the frames of an SVG that pdftocairo has made.

# A line "left top right bottom", in points, for each rectangle that is stroked with square ends: no
# other line of a picture is.
frames() {
    sed -n '/stroke-linecap:square/s/.* d="M \([-0-9.]* [-0-9.]*\) L [-0-9. ]* L \([-0-9.]* [-0-9.]*\) .*/\1 \2/p'
}
