"""Writes animated GIF files whose every block is as the caller asks."""

import struct

from PIL import Image

CLEAR_TO_BACKGROUND = 2


def shared_palette(pictures, colours):
    """One palette for all pictures: a list of (r, g, b), without the transparent entry."""
    width = max(picture.width for picture in pictures)
    strip = Image.new("RGB", (width, sum(picture.height for picture in pictures)), (52, 40, 58))
    top = 0
    for picture in pictures:
        solid = picture.getchannel("A").point(lambda a: 255 if a >= 128 else 0)
        strip.paste(picture.convert("RGB"), (0, top), solid)
        top += picture.height
    reduced = strip.quantize(colours, method=Image.MEDIANCUT, kmeans=2)
    flat = reduced.getpalette()[:3 * colours]
    return sorted({tuple(flat[i:i + 3]) for i in range(0, len(flat), 3)})


def to_indexes(picture, palette, transparent):
    """The picture's pixels as palette indexes; what is less than half opaque is transparent."""
    nearest = {}
    result = bytearray()
    for red, green, blue, alpha in picture.getdata():
        if alpha < 128:
            result.append(transparent)
            continue
        key = (red, green, blue)
        if key not in nearest:
            nearest[key] = min(range(len(palette)), key=lambda i: sum(
                weight * (a - b) ** 2 for weight, a, b in zip((3, 4, 2), key, palette[i])))
        result.append(nearest[key])
    return bytes(result)


def compressed(indexes, bits):
    """LZW codes of the indexes, in the order of bits that GIF uses."""
    clear, end = 1 << bits, (1 << bits) + 1
    out, buffer, filled = bytearray(), 0, 0
    table, width = {}, bits + 1

    def put(code):
        nonlocal buffer, filled
        buffer |= code << filled
        filled += width
        while filled >= 8:
            out.append(buffer & 255)
            buffer >>= 8
            filled -= 8

    put(clear)
    table = {(i,): i for i in range(clear)}
    following, prefix = end + 1, ()
    for index in indexes:
        longer = prefix + (index,)
        if longer in table:
            prefix = longer
            continue
        put(table[prefix])
        if following < 4096:
            if following == 1 << width:
                width += 1
            table[longer] = following
            following += 1
        else:
            put(clear)
            table = {(i,): i for i in range(clear)}
            following, width = end + 1, bits + 1
        prefix = (index,)
    if prefix:
        put(table[prefix])
        if following == 1 << width and width < 12:
            width += 1
    put(end)
    if filled:
        out.append(buffer & 255)
    return bytes(out)


def blocks(data):
    """The data in sub-blocks of at most 255 bytes, with the closing empty one."""
    pieces = [data[i:i + 255] for i in range(0, len(data), 255)]
    return b"".join(bytes([len(piece)]) + piece for piece in pieces) + b"\0"


def write_gif(path, pictures, delays_ms, loops=None, colours=63):
    """Writes the pictures, all of one size, as the frames of a GIF.

    Each frame is stored as the smallest rectangle around what is opaque in it and is cleared to
    the background afterwards. loops is the count in the loop extension (0 is forever); None
    leaves the extension out. Delays are multiples of 10 ms, one for each frame.
    """
    width, height = pictures[0].size
    palette = shared_palette(pictures, colours)
    transparent = len(palette)
    bits = max(2, transparent.bit_length())
    table = b"".join(bytes(colour) for colour in palette).ljust(3 << bits, b"\0")

    data = b"GIF89a" + struct.pack("<HHBBB", width, height, 0x80 | 0x70 | (bits - 1),
                                   transparent, 0) + table
    if loops is not None:
        data += b"\x21\xff\x0bNETSCAPE2.0\x03\x01" + struct.pack("<H", loops) + b"\0"
    for picture, delay in zip(pictures, delays_ms):
        box = picture.getchannel("A").point(lambda a: 255 if a >= 128 else 0).getbbox()
        part = picture.crop(box)
        data += b"\x21\xf9\x04" + struct.pack("<BHBB", CLEAR_TO_BACKGROUND << 2 | 1, delay // 10,
                                              transparent, 0)
        data += b"\x2c" + struct.pack("<HHHHB", box[0], box[1], part.width, part.height, 0)
        data += bytes([bits]) + blocks(compressed(to_indexes(part, palette, transparent), bits))
    with open(path, "wb") as file:
        file.write(data + b"\x3b")
