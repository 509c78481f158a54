#!/usr/bin/python3
"""Draws every sample of this folder anew. Needs python3-pil (tools/install-dependencies samples).

The same version of the library gives the same bytes each time.
"""

import json
import pathlib

from PIL import Image

from drawing import pictures, walker
from drawing.gifwriter import write_gif

HERE = pathlib.Path(__file__).resolve().parent


def draw_films():
    walk = walker.frames()
    write_gif(HERE / "walk.gif", walk, [100] * len(walk), loops=0)
    write_gif(HERE / "single.gif", [pictures.cactus()], [0])
    pinwheel = pictures.pinwheel()
    write_gif(HERE / "loop-forever.gif", pinwheel, [80] * len(pinwheel), loops=0, colours=31)
    heart = pictures.heart()
    write_gif(HERE / "loop-three.gif", heart, [90] * len(heart), loops=3, colours=31)
    owl = pictures.owl()
    write_gif(HERE / "uneven.gif", [picture for picture, _ in owl], [delay for _, delay in owl],
              loops=0, colours=31)


def halved(picture):
    return picture.convert("RGBA").resize((picture.width // 2, picture.height // 2))


def draw_other_films():
    """Films with soft edges: an APNG, and a WebP film whose frames are shown for different times."""
    pinwheel = [halved(picture) for picture in pictures.pinwheel()]
    pinwheel[0].save(HERE / "pinwheel.png", save_all=True, append_images=pinwheel[1:],
                     duration=80, loop=0, disposal=1, blend=0, optimize=True)
    owl = [(halved(picture), delay) for picture, delay in pictures.owl()]
    owl[0][0].save(HERE / "owl.webp", save_all=True, append_images=[each for each, _ in owl[1:]],
                   duration=[delay for _, delay in owl], loop=2, lossless=True, method=6)


def draw_sheet():
    """The walker on a sheet of four columns and three rows, with its description."""
    frames = [picture.convert("RGBA").resize((48, 48)) for picture in walker.frames()]
    sheet = Image.new("RGBA", (4 * 48, 3 * 48))
    rectangles = []
    for number, frame in enumerate(frames):
        x, y = number % 4 * 48, number // 4 * 48
        sheet.paste(frame, (x, y))
        rectangles.append({"filename": f"walk {number}", "duration": 100,
                           "frame": {"x": x, "y": y, "w": 48, "h": 48}})
    sheet.save(HERE / "walk-sheet.png", optimize=True)
    text = json.dumps({"frames": rectangles, "meta": {"image": "walk-sheet.png"}}, indent=1)
    (HERE / "walk-sheet.json").write_text(text + "\n", encoding="utf-8")


def draw_frame_folder():
    folder = HERE / "bounce"
    frames = pictures.ball()
    for name, picture in frames:
        (folder / name).parent.mkdir(parents=True, exist_ok=True)
        picture.save(folder / name, optimize=True)
    config = {
        "ImageList": [{"filename": name} for name, _ in frames],
        "ShiftInterval": 60,
        "LockScale": True,
        "ImageMirror": False,
        "ImageFlip": False,
        "LoopCount": -1,
    }
    (folder / "config.json").write_text(json.dumps(config, indent=2) + "\n", encoding="utf-8")


def main():
    draw_films()
    draw_other_films()
    draw_sheet()
    draw_frame_folder()
    pictures.meadow().save(HERE / "tile.png", optimize=True)
    pictures.apple().save(HERE / "apple.png", optimize=True)


if __name__ == "__main__":
    main()
