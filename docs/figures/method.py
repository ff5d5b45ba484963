#!/usr/bin/env python3
"""Draws the figures of docs/method.md from the sample pictures and the library's own data.

usage: method.py    needs the library in build/release
"""
import numpy
from PIL import Image, ImageDraw, ImageFont

import cascade
import library
import points
import sheet

STAGES = cascade.read()


def gray(pixels):
    return numpy.asarray(Image.fromarray(pixels).convert("L"))


def colour(gray_pixels):
    return numpy.repeat(gray_pixels[:, :, None], 3, axis=2)


def enlarge(pixels, factor):
    return pixels.repeat(factor, 0).repeat(factor, 1)


def heat(values):
    """Dark blue over red to yellow for 0 to 1."""
    v = numpy.clip(values, 0, 1)
    channels = [numpy.interp(v, (0, 0.35, 0.7, 1), stops) for stops in
                ((20, 120, 235, 255), (20, 30, 90, 240), (60, 110, 50, 140))]
    return numpy.stack(channels, axis=2).astype(numpy.uint8)


def draw_features():
    """The classifiers of the first stage over the mean of the seven sample faces."""
    heads = []
    for number in range(1, 8):
        face = gray(library.read(f"average_face_{number}.jpg"))[93:255, 64:226]
        heads.append(numpy.asarray(Image.fromarray(face).resize((cascade.SIDE, cascade.SIDE), Image.BOX), float))
    window = enlarge(colour(numpy.mean(heads, axis=0).astype(numpy.uint8)), 8)
    panels = [(window, "a window, 8 times larger")]
    for features, *_ in STAGES[0][1] + STAGES[1][1][:2]:
        image = Image.fromarray(window.copy())
        for x, y, width, height, weight in features:
            box = Image.new("RGB", (8 * width, 8 * height), "white" if weight > 0 else "black")
            place = image.crop((8 * x, 8 * y, 8 * (x + width), 8 * (y + height)))
            image.paste(Image.blend(place, box, 0.6), (8 * x, 8 * y))
        panels.append((numpy.asarray(image), f"{len(features)} rectangles"))
    sheet.write(sheet.row(panels[:6]), library.IMAGES / "method_features.jpg")


def draw_scan():
    """How many stages each window passes at the size at which the middle faces are 20 pixels wide."""
    picture = gray(library.read("average_faces.png"))
    scale = cascade.SIDE / 92
    small = Image.fromarray(picture).resize((round(picture.shape[1] * scale), round(picture.shape[0] * scale)),
                                            Image.BOX)
    scan = cascade.Scan(numpy.asarray(small), STAGES)
    depth = numpy.pad(scan.depth / len(STAGES), ((10, 9), (10, 9)))
    panels = [(enlarge(colour(numpy.asarray(small)), 3), "the picture at this size, 3 times larger"),
              (enlarge(heat(depth), 3), "stages passed around each place")]
    sheet.write(sheet.row(panels), library.IMAGES / "method_scan.png")


def print_survivors():
    """Of all windows of the picture at all its sizes."""
    picture = Image.fromarray(gray(library.read("average_faces.png")))
    width, counts = 384, numpy.zeros(len(STAGES) + 1, int)
    while width * picture.height / picture.width > cascade.SIDE:
        small = picture.resize((round(width), round(width * picture.height / picture.width)), Image.BOX)
        counts += cascade.Scan(numpy.asarray(small), STAGES).survivors
        width /= 1.18
    print(f"{counts[0]} windows; left after each stage:",
          ", ".join(f"{k}: {100 * count / counts[0]:.3g} %" for k, count in enumerate(counts)))
    classifiers = [len(stage[1]) for stage in STAGES]
    print("classifiers of each stage:", classifiers, "mean evaluated for a window:",
          round(float((counts[:-1] * numpy.array(classifiers)).sum() / counts[0]), 1))


def draw_angles():
    """Hits at each fine angle on a face that leans by 10 degrees."""
    head = Image.fromarray(gray(library.read("average_face_4.jpg"))).rotate(10, Image.BICUBIC)
    face = library.largest_face(numpy.asarray(head.convert("RGB")))
    crop = head.crop((face.x - face.width, face.y - face.width, face.x + face.width, face.y + face.width))
    crop = crop.resize((80, 80), Image.BOX)
    bars = []
    for k in range(-7, 8):
        turned = crop.rotate(-(15 + 1.5 * k), Image.BILINEAR)
        hits = 0
        for side in (56, 47, 40, 34, 29):
            scan = cascade.Scan(numpy.asarray(turned.resize((side, side), Image.BOX)), STAGES)
            hits += int((scan.depth == len(STAGES)).sum())
        bars.append((15 + 1.5 * k, hits))
    lines = ['<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 620 190" font-family="sans-serif" font-size="12">',
             '<rect width="620" height="190" fill="white"/>']
    tallest = max(hits for _, hits in bars)
    for k, (angle, hits) in enumerate(bars):
        height, x = 130 * hits / tallest, 12 + 40 * k
        lines.append(f'<rect x="{x}" y="{150 - height:.1f}" width="30" height="{height:.1f}" fill="#4a90d9"/>'
                     f'<text x="{x + 15}" y="{145 - height:.1f}" text-anchor="middle">{hits}</text>'
                     f'<text x="{x + 15}" y="166" text-anchor="middle">{angle:g}°</text>')
    lines.append('<text x="12" y="184">hits of the scan by the angle that the crop was turned back by</text></svg>')
    path = library.IMAGES / "method_angles.svg"
    path.write_text("\n".join(lines) + "\n", encoding="utf-8")
    print(path.name, bars, "the library says", face.angle)


def face_frame(number=4):
    """A sample face as the point search sees it, and the gray 256 by 256 frame: the eyes where the mean face has them."""
    mean = points.mean_face()
    left, right = numpy.array((112.0, 160.0)), numpy.array((176.0, 160.0))
    scale = (right - left)[0] / (mean[1] - mean[0])[0]
    offset = (left + right) / 2 - scale * (mean[0] + mean[1]) / 2
    head = Image.open(library.DATA / f"average_face_{number}.jpg").convert("RGB")
    return numpy.asarray(head.transform((256, 256), Image.AFFINE, (scale, 0, offset[0], 0, scale, offset[1]),
                                        Image.BICUBIC))


def draw_points():
    """The forty points, numbered, as the library finds them."""
    pixels = library.read("average_face_5.jpg")
    features = library.Image.from_array(pixels).features()
    canvas = Image.fromarray(pixels[30:300, 20:270]).resize((750, 810), Image.BICUBIC)
    draw, font = ImageDraw.Draw(canvas), ImageFont.load_default()
    for k, (x, y) in enumerate(features.points):
        x, y, sure = 3 * (x - 20), 3 * (y - 30), features.confidences[k] > 1
        draw.ellipse((x - 4, y - 4, x + 4, y + 4), fill=sheet.BLUE if sure else sheet.RED)
        draw.rectangle((x + 4, y - 13, x + 6 + 6 * len(str(k)), y - 2), fill=(255, 255, 255))
        draw.text((x + 6, y - 13), str(k), fill=(20, 20, 20), font=font)
    sheet.write(numpy.asarray(canvas), library.IMAGES / "method_points.jpg")


def mesh_path(nodes, dx):
    outline = [5, 7, 9, 11, 33, 31, 13, 15, 29, 14, 12, 30, 32, 10, 8, 6, 5]
    parts = [outline, [16, 34, 17], [18, 35, 19], [23, 0, 24], [25, 1, 26], [22, 27, 2, 28, 22],
             [3, 36, 20, 37, 4, 39, 21, 38, 3]]
    return " ".join("M" + " L".join(f"{dx + nodes[k][0]:.1f},{nodes[k][1]:.1f}" for k in part) for part in parts)


def draw_shapes():
    """The mean face bent by a third of the range of six rows, to both sides."""
    mean, rows = points.mean_face(), points.shape_rows()
    ranges = {0: 113.04, 4: 26.052, 5: 24.464, 6: 19.15, 8: 15.179, 16: 8.6299}
    lines = ['<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 1240 270" font-family="sans-serif" font-size="16">',
             '<rect width="1240" height="270" fill="white"/>']
    for n, (row, extent) in enumerate(ranges.items()):
        dx = 206 * n - 22
        for sign, stroke in ((-1, "#d9534a"), (1, "#4a90d9")):
            bent = mean + sign * extent / 3 * rows[row]
            lines.append(f'<path d="{mesh_path(bent, dx)}" fill="none" stroke="{stroke}" stroke-width="1.6"/>')
        lines.append(f'<text x="{dx + 128}" y="262" text-anchor="middle">row {row}</text>')
    path = library.IMAGES / "method_shapes.svg"
    path.write_text("\n".join(lines + ["</svg>"]) + "\n", encoding="utf-8")
    print(path.name, path.stat().st_size, "bytes")


def draw_scores():
    """What the networks of four nodes say about every place of the frame."""
    frame = face_frame()
    nodes = points.networks()
    panels = [(sheet.shrink(frame, 160), "the frame")]
    for node, name in ((0, "an eye"), (2, "tip of the nose"), (4, "corner of the mouth"), (29, "chin")):
        scores = points.score_map(gray(frame), nodes[node], 2)
        panels.append((sheet.shrink(heat(scores - 0.5), 160), f"{node}: {name}"))
    sheet.write(sheet.row(panels), library.IMAGES / "method_scores.jpg")


def illumination(window):
    """The library's relaxation, all inner pixels at once; the border follows its neighbours along the border."""
    light = window.copy()
    for _ in range(100):
        old = light.copy()
        light[1:-1, 1:-1] = (window[1:-1, 1:-1] + 100 * (old[:-2, 1:-1] + old[2:, 1:-1] + old[1:-1, :-2] +
                                                        old[1:-1, 2:])) / 401
        for edge in (0, -1):
            light[edge, 1:-1] = (window[edge, 1:-1] + 100 * (old[edge, :-2] + old[edge, 2:])) / 201
            light[1:-1, edge] = (window[1:-1, edge] + 100 * (old[:-2, edge] + old[2:, edge])) / 201
    return light


def draw_eyes():
    """The frame around a face lit from one side, the window of one eye, its light, and what remains."""
    pixels = library.read("average_face_6.jpg").astype(float)
    pixels *= numpy.linspace(0.35, 1.25, pixels.shape[1])[None, :, None]
    pixels = numpy.clip(pixels, 0, 255).astype(numpy.uint8)
    face = library.largest_face(pixels)
    square = [face.x, face.y, face.x, face.y] + face.width * numpy.array((-0.55, -0.4, 0.55, 0.7))
    crop = Image.fromarray(pixels).crop(tuple(square.astype(int)))
    frame = numpy.asarray(crop.convert("L").resize((128, 128), Image.BOX))
    window = frame[16:48, 23:55].astype(float)
    light = illumination(window)
    reflectance = numpy.clip(100 * window / light, 0, 255)
    marked = sheet.mark_frame(colour(frame), (23, 16, 54, 47), pen=1)
    found = library.Image.from_array(pixels).eyes(face)
    result = sheet.mark_points(pixels, found, [sheet.YELLOW] * 2, 3)
    panels = [(sheet.shrink(marked, 160), "the frame and a window")]
    panels += [(enlarge(colour(p.astype(numpy.uint8)), 5), name) for p, name in
               ((window, "the window"), (light, "its light"), (reflectance, "what remains"))]
    panels.append((sheet.shrink(result[60:300], 160), "both eyes"))
    sheet.write(sheet.row(panels), library.IMAGES / "method_eyes.jpg")


def draw_frame():
    """The natural frame, a zoomed and a shifted one, and one that the picture's edge holds back."""
    group = library.read("average_faces.png")
    roomy = numpy.pad(group, ((90, 90), (90, 90), (0, 0)), mode="edge")
    marked = sheet.mark_face(roomy, library.largest_face(roomy))
    for scale, shift, pen_colour in ((1, (0, 0), sheet.YELLOW), (1.5, (0, 0), sheet.BLUE), (1, (0.35, 0), sheet.RED)):
        marked = sheet.mark_frame(marked, library.frame(roomy, 300, 400, scale=scale, shift=shift), pen_colour)
    held = sheet.mark_face(group, library.largest_face(group))
    held = sheet.mark_frame(held, library.frame(group, 300, 400, scale=0.5))
    panels = [(sheet.shrink(marked[60:360, 20:420], 200), "face, scale 1, scale 1.5, shift 0.35"),
              (sheet.shrink(held[:300, :400], 200), "scale 0.5 near the picture's corner")]
    sheet.write(sheet.row(panels), library.IMAGES / "method_frame.jpg")


if __name__ == "__main__":
    draw_features()
    draw_scan()
    print_survivors()
    draw_angles()
    draw_points()
    draw_shapes()
    draw_scores()
    draw_eyes()
    draw_frame()
