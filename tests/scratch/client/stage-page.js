// Runs in the browser, with the scripts of the client: a stage that shows a package.
'use strict';

/* global VirtualMachine, ScratchRender, ScratchStorage, ScratchSVGRenderer */

class Stage {
    #renderer;
    #machine = new VirtualMachine();
    #plays = false;

    constructor(width, height) {
        this.#renderer = new ScratchRender(document.getElementById('stage'));
        this.resize(width, height);
        this.#machine.attachRenderer(this.#renderer);
        this.#machine.attachV2BitmapAdapter(new ScratchSVGRenderer.BitmapAdapter());
    }

    resize(width, height) {
        this.#renderer.resize(width, height);
    }

    /** Loads the package that the server holds, a sprite into an empty project. */
    async load(isSprite) {
        const fetched = async address => (await fetch(address)).arrayBuffer();
        // A storage remembers pictures: those of the package before must not fill gaps in this one.
        this.#machine.attachStorage(new ScratchStorage.ScratchStorage());
        await this.#machine.loadProject(await fetched(isSprite ? 'empty' : 'package'));
        if (isSprite) {
            await this.#machine.addSprite(await fetched('package'));
        }
        return this.#sprites.map(sprite => ({
            name: sprite.getName(), x: sprite.x, y: sprite.y, size: sprite.size,
            currentCostume: sprite.currentCostume, costumes: sprite.getCostumes().length,
            broken: sprite.getCostumes().some(costume => costume.broken)
        }));
    }

    get #sprites() {
        return this.#machine.runtime.targets.filter(target => !target.isStage);
    }

    showCostume(sprite, costume) {
        this.#sprites[sprite].setCostume(costume);
    }

    /** Hides every sprite but this one, which is shown unturned and at its full size. */
    showAlone(sprite) {
        this.#sprites.forEach((other, index) => other.setVisible(index === sprite));
        this.#sprites[sprite].setDirection(90);
        this.#sprites[sprite].setSize(100);
    }

    /**
     * Presses the flag and lets the machine run by itself. Gives the milliseconds until the first
     * sprite begins the pass after these `passes`, or until it shows the `last` costume of them.
     */
    playTime({ passes, last }) {
        const [sprite] = this.#sprites;
        const begun = performance.now();
        let [passed, shown] = [0, 0];
        if (!this.#plays) {
            this.#plays = true;
            this.#machine.start();
        }
        this.#machine.greenFlag();
        return new Promise(resolve => {
            const timer = setInterval(() => {
                const costume = sprite.currentCostume;
                passed += costume < shown ? 1 : 0;
                shown = costume;
                if (passed === passes || (passed === passes - 1 && costume === last)) {
                    clearInterval(timer);
                    this.#machine.stopAll();
                    resolve(performance.now() - begun);
                }
            }, 2);
        });
    }

    /** The pixels of the stage as base64 text: RGBA, from the lowest row to the highest. */
    pixels() {
        this.#renderer.draw();
        const { gl } = this.#renderer;
        const [width, height] = [gl.drawingBufferWidth, gl.drawingBufferHeight];
        const bytes = new Uint8Array(width * height * 4);
        gl.readPixels(0, 0, width, height, gl.RGBA, gl.UNSIGNED_BYTE, bytes);
        let text = '';
        for (let at = 0; at < bytes.length; at += 0x8000) {
            text += String.fromCharCode(...bytes.subarray(at, at + 0x8000));
        }
        return { width, height, base64: btoa(text) };
    }
}

window.Stage = Stage;
