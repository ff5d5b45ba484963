"""The face cascade in its plainest form: arrays over all windows of one picture at once."""
import struct

import numpy

from library import ROOT

SIDE = 20  # pixels of a window


def read():
    """A list of stages: threshold, and a list of (rectangles with weights, threshold, left value, right value)."""
    words = iter(struct.iter_unpack("<4s", (ROOT / "models" / "class_dat.bin").read_bytes()))

    def integer():
        return struct.unpack("<i", next(words)[0])[0]

    def real():
        return struct.unpack("<f", next(words)[0])[0]

    def feature():
        return tuple(integer() for _ in range(4)) + (real() / (SIDE - 2) ** 2,)

    def classifier():
        return [feature() for _ in range(integer())], real(), real(), real()

    _, _, stages, _, _ = (integer() for _ in range(5))
    result = []
    for _ in range(stages):
        count, threshold = integer(), real()
        result.append((threshold, [classifier() for _ in range(count)]))
    return result


class Scan:
    """All windows of a gray picture; `depth` tells how many stages each passes."""

    def __init__(self, gray, stages):
        gray = gray.astype(numpy.float64)
        self.sums = numpy.pad(gray, ((1, 0), (1, 0))).cumsum(0).cumsum(1)
        self.squares = numpy.pad(gray ** 2, ((1, 0), (1, 0))).cumsum(0).cumsum(1)
        rows, columns = gray.shape[0] - SIDE + 1, gray.shape[1] - SIDE + 1
        y, x = (a.ravel() for a in numpy.mgrid[:rows, :columns])
        inner = (x, y, 1, 1, SIDE - 2, SIDE - 2)
        area = (SIDE - 2) ** 2
        variance = self.box(self.squares, *inner) / area - (self.box(self.sums, *inner) / area) ** 2
        deviation = numpy.sqrt(numpy.maximum(variance, 0))
        depth = numpy.zeros(x.size, int)
        alive = numpy.arange(x.size)
        self.survivors = [alive.size]
        for threshold, classifiers in stages:
            score = sum(self.value(c, x[alive], y[alive], deviation[alive]) for c in classifiers)
            alive = alive[score >= threshold - 1e-4]
            depth[alive] += 1
            self.survivors.append(alive.size)
        self.depth = depth.reshape(rows, columns)

    @staticmethod
    def box(table, x, y, left, top, width, height):
        x1, y1, x2, y2 = x + left, y + top, x + left + width, y + top + height
        return table[y2, x2] - table[y1, x2] - table[y2, x1] + table[y1, x1]

    def value(self, classifier, x, y, deviation):
        features, threshold, left, right = classifier
        total = sum(weight * self.box(self.sums, x, y, *rectangle) for *rectangle, weight in features)
        return numpy.where(total < threshold * deviation, left, right)
