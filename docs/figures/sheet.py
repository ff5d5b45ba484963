"""Rows of panels with captions, and marks on pictures."""
import math

import numpy
from PIL import Image, ImageDraw, ImageFont

GREEN, YELLOW, RED, BLUE = (60, 220, 80), (250, 210, 40), (235, 70, 60), (70, 150, 250)
GAP, CAPTION = 6, 16  # pixels


def mark_face(pixels, face, colour=GREEN, pen=3):
    """Draws the square of a face as it stands, its upper side twice as thick."""
    image = Image.fromarray(pixels)
    draw = ImageDraw.Draw(image)
    lean = -math.radians(face.angle)
    half = face.width / 2
    corners = [(face.x + x * half * math.cos(lean) - y * half * math.sin(lean),
                face.y + x * half * math.sin(lean) + y * half * math.cos(lean))
               for x, y in ((-1, -1), (1, -1), (1, 1), (-1, 1))]
    draw.line(corners + corners[:1], fill=colour, width=pen)
    draw.line(corners[:2], fill=colour, width=2 * pen)
    return numpy.asarray(image)


def mark_frame(pixels, corners, colour=YELLOW, pen=3):
    image = Image.fromarray(pixels)
    ImageDraw.Draw(image).rectangle(corners, outline=colour, width=pen)
    return numpy.asarray(image)


def mark_points(pixels, places, colours, radius=2):
    image = Image.fromarray(pixels)
    draw = ImageDraw.Draw(image)
    for (x, y), colour in zip(places, colours):
        draw.ellipse((x - radius, y - radius, x + radius, y + radius), fill=colour)
    return numpy.asarray(image)


def shrink(pixels, height):
    """To a height, by area mean below and bicubic above."""
    image = Image.fromarray(pixels)
    width = max(round(image.width * height / image.height), 1)
    return numpy.asarray(image.resize((width, height), Image.BOX if height < image.height else Image.BICUBIC))


def row(panels):
    """Panels (pixels, caption) side by side on white, aligned at the top."""
    width = sum(p.shape[1] for p, _ in panels) + GAP * (len(panels) - 1)
    height = max(p.shape[0] for p, _ in panels) + CAPTION
    sheet = Image.new("RGB", (width, height), "white")
    draw, font = ImageDraw.Draw(sheet), ImageFont.load_default()
    x = 0
    for pixels, caption in panels:
        sheet.paste(Image.fromarray(pixels), (x, CAPTION))
        draw.text((x + 2, 2), caption, fill=(30, 30, 30), font=font)
        x += pixels.shape[1] + GAP
    return numpy.asarray(sheet)


def column(rows):
    width = max(r.shape[1] for r in rows)
    return numpy.vstack([numpy.pad(r, ((0, GAP), (0, width - r.shape[1]), (0, 0)), constant_values=255)
                         for r in rows])


def write(pixels, path, quality=82):
    Image.fromarray(pixels).save(path, quality=quality, optimize=True)
    print(f"{path.name}: {path.stat().st_size} bytes, {pixels.shape[1]} by {pixels.shape[0]} pixels")
