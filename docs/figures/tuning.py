#!/usr/bin/env python3
"""Draws the pictures of docs/tuning.md from the sample pictures.

usage: tuning.py           needs the library in build/release
       tuning.py --times   only prints how long detections take
"""
import sys

import numpy
from PIL import Image, ImageDraw

import library
import sheet


def crowd():
    """One picture of 1,200 by 400 pixels with seven people, their faces from 170 to 18 pixels wide."""
    canvas = Image.new("RGB", (1200, 400), (205, 208, 212))
    x = 10
    for number, height in enumerate((380, 260, 180, 130, 90, 62, 40), start=1):
        head = library.read(f"average_face_{number}.jpg")
        head = sheet.shrink(head, height)
        canvas.paste(Image.fromarray(head), (x, 390 - height))
        x += head.shape[1] + 24
    return numpy.asarray(canvas)


def turned(degrees):
    """A face that leans clockwise by so many degrees, on the colour of its edge."""
    head = Image.fromarray(library.read("average_face_3.jpg"))
    return numpy.asarray(head.rotate(-degrees, Image.BICUBIC, fillcolor=head.getpixel((2, 2))))


def with_faces(pixels, pen=3, **settings):
    found = library.faces(pixels, **settings)
    for face in found:
        pixels = sheet.mark_face(pixels, face, pen=pen)
    return pixels, found


def draw_width():
    rows = []
    for width in (100, 256, 384, 1000):
        marked, found = with_faces(crowd(), 4, working_width=width)
        rows.append(sheet.row([(sheet.shrink(marked, 160), f"width {width}: {len(found)} squares")]))
    sheet.write(sheet.column(rows), library.IMAGES / "tuning_width.jpg")


def clutter(seed):
    """A thrown heap of discs and boxes, some of which look a little like faces, and four people before it."""
    draw_from = numpy.random.default_rng(seed)
    canvas = Image.new("RGB", (800, 400), (150, 140, 130))
    draw = ImageDraw.Draw(canvas)
    for _ in range(900):
        x, y, a, b = draw_from.uniform((-20, -20, 4, 4), (820, 420, 40, 40))
        colour = tuple(int(value) for value in draw_from.uniform(20, 240, 3))
        shape = draw.ellipse if draw_from.random() < 0.6 else draw.rectangle
        shape((x - a, y - b, x + a, y + b), fill=colour)
    for number, (x, y, height) in enumerate(((40, 160, 220), (260, 30, 150), (470, 190, 110), (680, 90, 70)), start=2):
        head = Image.fromarray(sheet.shrink(library.read(f"average_face_{number}.jpg"), height))
        canvas.paste(head, (x, y))
    return numpy.asarray(canvas)


def draw_threshold():
    panels = []
    for threshold in (1, 3, 30):
        marked, found = with_faces(clutter(5), 5, threshold=threshold, working_width=640)
        panels.append((sheet.shrink(marked, 130), f"threshold {threshold}: {len(found)} squares"))
    sheet.write(sheet.row(panels), library.IMAGES / "tuning_threshold.jpg")


def print_times():
    """Processor time of a detection, the least of nine."""
    for width in (100, 256, 384, 640, 1000):
        for tilted, angle in ((False, False), (True, False), (True, True)):
            spent = library.detection_time(crowd(), tilted=tilted, fine_angle=angle, working_width=width)
            print(f"width {width}, tilted {tilted}, angle {angle}: {spent:.1f} ms")


def draw_rotations():
    rows = []
    for tilted, angle, name in ((False, False, "upright only"), (True, False, "tilted too"),
                                    (True, True, "tilted too, with the angle")):
        panels = []
        for degrees in (-40, -25, -15, -8, 0, 8, 15, 25, 40):
            marked, found = with_faces(turned(degrees), 4, tilted=tilted, fine_angle=angle)
            panels.append((sheet.shrink(marked, 104), f"{found[0].angle:+.1f}" if found else "none"))
        rows.append(sheet.row([(numpy.full((2, 200, 3), 255, numpy.uint8), name)]))
        rows.append(sheet.row(panels))
    sheet.write(sheet.column(rows), library.IMAGES / "tuning_rotations.jpg")


def group():
    """The group picture with more ground around it, so that frames have room."""
    return numpy.pad(library.read("average_faces.png"), ((90, 90), (90, 90), (0, 0)), mode="edge")


def draw_scale():
    panels = [(library.portrait(group(), 120, 160, scale=scale), f"scale {scale:g}") for scale in (0.5, 0.7, 1, 1.4, 2)]
    sheet.write(sheet.row(panels), library.IMAGES / "tuning_scale.jpg")


def draw_shift():
    panels = [(library.portrait(group(), 120, 160, scale=0.8, shift=shift), f"{shift[0]:+g}, {shift[1]:+g}")
              for shift in ((0, 0), (-0.2, 0), (0.2, 0), (0, -0.15), (0, 0.15))]
    sheet.write(sheet.row(panels), library.IMAGES / "tuning_shift.jpg")


def draw_shape():
    marked = group()
    for size, colour in (((35, 45), sheet.YELLOW), ((51, 51), sheet.GREEN), ((16, 9), sheet.BLUE)):
        marked = sheet.mark_frame(marked, library.frame(group(), *size, scale=0.8), colour)
    cuts = [(library.portrait(group(), width, 160, scale=0.8), f"{width} by 160") for width in (124, 160, 284)]
    sheet.write(sheet.row([(sheet.shrink(marked[60:360, 20:420], 160), "frames")] + cuts), library.IMAGES / "tuning_shape.jpg")


def draw_eyes():
    panels = []
    for degrees in (-15, 0, 15):
        for by_eyes in (False, True):
            cut = library.portrait(turned(degrees), 120, 160, by_eyes=by_eyes)
            panels.append((cut, "by the eyes" if by_eyes else "by the face"))
    sheet.write(sheet.row(panels), library.IMAGES / "tuning_eyes.jpg")


def draw_quality():
    panels = []
    for quality in (10, 30, 60, 90, 100):
        path = library.IMAGES / "quality.tmp.jpg"
        library.Image.from_array(group()).portrait(120, 160, scale=0.9).save(path, quality=quality)
        panels.append((numpy.asarray(Image.open(path)), f"{quality}: {path.stat().st_size} bytes"))
        path.unlink()
    sheet.write(sheet.row(panels), library.IMAGES / "tuning_quality.jpg", 92)


if __name__ == "__main__":
    if sys.argv[1:] == ["--times"]:
        print_times()
        sys.exit()
    draw_width()
    draw_threshold()
    draw_rotations()
    draw_scale()
    draw_shift()
    draw_shape()
    draw_eyes()
    draw_quality()
