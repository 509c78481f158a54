'use strict';

{
    // The way of a pattern for one press of an arrow key, in units of the page.
    const keyStep = 20;
    // A pointer that moves less than this, in CSS pixels, has clicked.
    const dragDistance = 10;
    const arrows = { ArrowLeft: [-1, 0], ArrowRight: [1, 0], ArrowUp: [0, -1], ArrowDown: [0, 1] };

    const { page, pictures: files, objects: list } =
        JSON.parse(document.getElementById('data').textContent);
    const main = document.getElementById('page');
    const canvas = document.getElementById('canvas');
    const painter = canvas.getContext('2d');
    const pixel = newPainter(1, 1, { willReadFrequently: true });

    /** Paints on a canvas of its own. */
    function newPainter(width, height, options) {
        const own = document.createElement('canvas');
        [own.width, own.height] = [width, height];
        return own.getContext('2d', options);
    }

    /** Whether a pixel of a picture is not fully transparent. */
    function isOpaque(picture, x, y) {
        pixel.clearRect(0, 0, 1, 1);
        pixel.drawImage(picture, x, y, 1, 1, 0, 0, 1, 1);
        return pixel.getImageData(0, 0, 1, 1).data[3] > 0;
    }

    /** The remainder of a division, from 0 up to the divisor. */
    function wrapped(value, length) {
        return ((value % length) + length) % length;
    }

    /** The frames of an object in time: which one is shown. */
    class Film {
        #ends = [];
        #length = 0;
        #began = null;

        constructor({ delays, loops, shown }) {
            this.index = shown;
            this.loops = loops;
            for (const delay of delays) {
                this.#length += Math.max(0, delay);
                this.#ends.push(this.#length);
            }
        }

        get plays() {
            return this.#began !== null;
        }

        /** Plays from the first frame, or stops there. */
        setPlaying(plays) {
            this.index = 0;
            this.#began = plays ? performance.now() : null;
        }

        /** Shows what is due at a time. After its last pass a film rests on its last frame. */
        advance(now) {
            if (!this.plays || this.#length === 0) {
                return;
            }
            const passed = Math.max(0, now - this.#began);
            if (this.loops >= 0 && passed >= this.#length * (this.loops + 1)) {
                this.index = this.#ends.length - 1;
                this.#began = null;
                return;
            }
            const time = passed % this.#length;
            this.index = this.#ends.findIndex(end => time < end);
        }
    }

    /** An object of the page. Its coordinates are those of the page, in units. */
    class PageObject {
        #tile = null;

        constructor(data, pictures) {
            Object.assign(this, data);
            this.pictures = this.frames.map(number => pictures[number]);
            this.film = new Film(data);
            this.canPlay = this.frames.length > 1;
            // The way of a background's pattern, and the part of the object that is on the page.
            this.offset = [0, 0];
            this.part = {
                x: Math.max(0, -this.x),
                y: Math.max(0, -this.y),
                width: Math.min(this.x + this.width, page.x + page.width) - Math.max(this.x, page.x),
                height: Math.min(this.y + this.height, page.y + page.height) -
                    Math.max(this.y, page.y)
            };
        }

        get picture() {
            return this.pictures[this.film.index];
        }

        /** The size of the frame that is shown: all frames have the same scale. */
        get size() {
            return this.isBackground || !this.picture
                ? [this.width, this.height]
                : [this.picture.width * this.scaleX, this.picture.height * this.scaleY];
        }

        /** From the page to the object's own coordinates, of which the middle is (0, 0). */
        get transform() {
            return new DOMMatrix()
                .translate(this.x + this.width / 2, this.y + this.height / 2)
                .rotate(this.rotation)
                .scale(this.isMirrored ? -1 : 1, this.isFlipped ? -1 : 1);
        }

        paint() {
            if (!this.picture) {
                return;
            }
            const [width, height] = this.size;
            const { a, b, c, d, e, f } = this.transform;
            painter.save();
            painter.transform(a, b, c, d, e, f);
            if (this.isBackground) {
                this.#paintPattern();
            } else {
                painter.drawImage(this.picture, -width / 2, -height / 2, width, height);
            }
            painter.restore();
        }

        #paintPattern() {
            const { x, y, width, height } = this.part;
            const tile = this.#tileOf(this.picture);
            if (width <= 0 || height <= 0 || tile.width === 0 || tile.height === 0) {
                return;
            }
            painter.drawImage(tile, wrapped(x - this.offset[0], tile.width / 2),
                wrapped(y - this.offset[1], tile.height / 2), width, height,
                x - this.width / 2, y - this.height / 2, width, height);
        }

        /** The frame four times, so that any part as large as the frame can be taken from it. */
        #tileOf(picture) {
            if (this.#tile?.picture === picture) {
                return this.#tile.canvas;
            }
            const [width, height] = [Math.round(this.width), Math.round(this.height)];
            const scaled = newPainter(width, height);
            scaled.imageSmoothingQuality = 'high';
            scaled.drawImage(picture, 0, 0, width, height);
            const tile = newPainter(2 * width, 2 * height);
            if (width > 0 && height > 0) {
                for (const [column, row] of [[0, 0], [1, 0], [0, 1], [1, 1]]) {
                    tile.drawImage(scaled.canvas, column * width, row * height);
                }
            }
            this.#tile = { picture, canvas: tile.canvas };
            return tile.canvas;
        }

        /** Whether the frame that is shown has an opaque pixel at a point of the page. */
        isHit(point) {
            if (!this.picture) {
                return false;
            }
            const { x, y } = this.transform.inverse().transformPoint(point);
            const [width, height] = this.size;
            const column = Math.floor((x / width + 0.5) * this.picture.width);
            const row = Math.floor((y / height + 0.5) * this.picture.height);
            return column >= 0 && row >= 0 && column < this.picture.width &&
                row < this.picture.height && isOpaque(this.picture, column, row);
        }

        toggle() {
            if (this.canPlay) {
                this.film.setPlaying(!this.film.plays);
                this.tellState();
                refresh();
            }
        }

        scroll(x, y) {
            this.offset = [this.offset[0] + x, this.offset[1] + y];
            refresh();
        }

        /** The element for the keyboard and for screen readers. */
        addElement() {
            this.element = document.createElement(this.canPlay ? 'button' : 'div');
            this.element.className = 'object';
            this.element.setAttribute('aria-label', this.name);
            if (this.canPlay) {
                this.element.type = 'button';
                this.element.addEventListener('click', () => this.toggle());
            } else {
                this.element.setAttribute('role', 'img');
            }
            const { style } = this.element;
            style.left = `${100 * (this.x - page.x) / page.width}%`;
            style.top = `${100 * (this.y - page.y) / page.height}%`;
            style.width = `${100 * this.width / page.width}%`;
            style.height = `${100 * this.height / page.height}%`;
            style.transform = `rotate(${this.rotation}deg)`;
            main.append(this.element);
        }

        tellState() {
            if (this.canPlay) {
                this.element.setAttribute('aria-pressed', String(this.film.plays));
            }
        }
    }

    let objects = [];
    let isAwaited = false;

    function paint() {
        const zoom = canvas.width / page.width;
        painter.setTransform(zoom, 0, 0, canvas.height / page.height, 0, 0);
        painter.fillStyle = 'white';
        painter.fillRect(0, 0, page.width, page.height);
        painter.translate(-page.x, -page.y);
        objects.forEach(object => object.paint());
    }

    /** One picture of the screen, and the next one as long as something plays. */
    function step(now) {
        isAwaited = false;
        for (const object of objects) {
            object.film.advance(now);
            object.tellState();
        }
        paint();
        if (objects.some(object => object.film.plays)) {
            refresh();
        }
    }

    function refresh() {
        if (!isAwaited) {
            isAwaited = true;
            requestAnimationFrame(step);
        }
    }

    /** Makes the page as large as fits into the window. */
    function fit() {
        const zoom = Math.min(innerWidth / page.width, innerHeight / page.height);
        main.style.width = `${page.width * zoom}px`;
        main.style.height = `${page.height * zoom}px`;
        canvas.width = Math.max(1, Math.round(page.width * zoom * devicePixelRatio));
        canvas.height = Math.max(1, Math.round(page.height * zoom * devicePixelRatio));
        refresh();
    }

    function pointOf(event) {
        const place = canvas.getBoundingClientRect();
        return new DOMPoint(page.x + (event.clientX - place.left) * page.width / place.width,
            page.y + (event.clientY - place.top) * page.height / place.height);
    }

    /** The topmost object with an opaque pixel at a point. */
    function objectAt(point) {
        return objects.findLast(object => object.isHit(point));
    }

    function listenToPointer() {
        let pressed;
        let wasDragged = false;
        let last;
        canvas.addEventListener('pointerdown', event => {
            pressed = event.button === 0 ? objectAt(pointOf(event)) : undefined;
            wasDragged = false;
            last = event;
            canvas.setPointerCapture(event.pointerId);
        });
        canvas.addEventListener('pointermove', event => {
            if (!pressed) {
                canvas.style.cursor = objectAt(pointOf(event))?.canPlay ? 'pointer' : 'default';
                return;
            }
            const way = Math.hypot(event.clientX - last.clientX, event.clientY - last.clientY);
            if (pressed.isBackground && (wasDragged || way >= dragDistance)) {
                const [from, to] = [pointOf(last), pointOf(event)];
                pressed.scroll(to.x - from.x, to.y - from.y);
                wasDragged = true;
                last = event;
            }
        });
        canvas.addEventListener('pointerup', () => {
            if (pressed && !wasDragged) {
                pressed.toggle();
            }
            pressed = undefined;
        });
        canvas.addEventListener('pointercancel', () => {
            pressed = undefined;
        });
    }

    function listenToKeys() {
        document.addEventListener('keydown', event => {
            const background = objects.findLast(object => object.isBackground);
            const arrow = arrows[event.key];
            if (!background || !arrow || event.altKey || event.ctrlKey || event.metaKey) {
                return;
            }
            event.preventDefault();
            background.scroll(arrow[0] * keyStep, arrow[1] * keyStep);
        });
    }

    async function decoded(file) {
        const picture = new Image();
        picture.src = `data:image/png;base64,${file}`;
        await picture.decode();
        return picture;
    }

    async function start() {
        const pictures = await Promise.all(files.map(decoded));
        objects = list.map(data => new PageObject(data, pictures));
        objects.forEach(object => object.addElement());
        if (objects.some(object => object.isBackground)) {
            canvas.style.touchAction = 'none';
        }
        // Who wants less motion starts each film by hand.
        if (!matchMedia('(prefers-reduced-motion: reduce)').matches) {
            objects.filter(object => object.canPlay)
                .forEach(object => object.film.setPlaying(true));
        }
        listenToPointer();
        listenToKeys();
        addEventListener('resize', fit);
        fit();
    }

    start();
}
