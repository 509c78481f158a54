#!/usr/bin/python3
"""Draws every sample of this folder anew. Needs python3-pil (tools/install-dependencies samples).

The same version of the library gives the same bytes each time.
"""

import json
import pathlib

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
    draw_frame_folder()
    pictures.meadow().save(HERE / "tile.png", optimize=True)
    pictures.apple().save(HERE / "apple.png", optimize=True)


if __name__ == "__main__":
    main()
