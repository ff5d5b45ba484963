"""The mean face, the rows of the shape model and the networks of the nodes, read from the library's data."""
import numpy

from library import ROOT

MODELS = ROOT / "models"
SIDE, PATCH = 256, 32  # pixels
RECORDS, LENGTH, WEIGHTS = 0x3C9A71E5, 0xA1F04B26, 0x5D82C6B3  # masks of the words of a network


def mean_face():
    text = (MODELS / "mean_grid_40.txt").read_text(encoding="ascii")
    return numpy.array([int(text[i:i + 4], 16) for i in range(4, 4 + 40 * 8, 4)], float).reshape(40, 2)


def shape_rows():
    """32 rows of forty moves, in pixels of the frame for a parameter of 1."""
    return numpy.fromfile(MODELS / "eigengrids.bin", "<f4").reshape(32, 40, 2)


def networks():
    """For each node the hidden biases (3), the weights (3 by 1024) and the output's four numbers."""
    words = numpy.fromfile(MODELS / "neuro_dat.bin", "<u4")
    at, result = 0, []
    while at < words.size:
        at += 2 + int(words[at + 1] ^ LENGTH)
        neurons = []
        for inputs in (1024, 1024, 1024, 3):
            neurons.append((words[at + 1:at + 2 + inputs] ^ numpy.uint32(WEIGHTS)).view("<f4"))
            at += 2 + inputs
        hidden = numpy.array(neurons[:3])
        result.append((hidden[:, 0], hidden[:, 1:], neurons[3]))
    return result


def score_map(face, network, step=2):
    """1 less the network's output, at every `step`th position of a gray frame: 1.5 is best, 0.5 worst."""
    biases, weights, output = network
    padded = numpy.pad(face, PATCH // 2)
    patches = numpy.lib.stride_tricks.sliding_window_view(padded, (PATCH, PATCH))[:SIDE:step, :SIDE:step]
    rows, columns = patches.shape[:2]
    patches = patches.reshape(rows * columns, -1)
    ordered = numpy.sort(patches, axis=1)
    low, high = (ordered[:, k].astype(float)[:, None] for k in (4, -5))
    inputs = numpy.clip((patches - low) / numpy.maximum(high - low, 1) - 0.5, -0.5, 0.5)
    hidden = numpy.tanh(inputs @ weights.T + biases) / 2
    return (1 - numpy.tanh(hidden @ output[1:] + output[0]) / 2).reshape(rows, columns)
