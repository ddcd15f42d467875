// Reads colours out of screenshots. The browser itself decodes them.

/** The colours, [red, green, blue], of `points` ({x, y} in the picture) of a PNG. */
export async function coloursAt(browser, png, points) {
    const page = await browser.newPage();
    try {
        return await page.evaluate(async ([address, wanted]) => {
            const image = new Image();
            image.src = address;
            await image.decode();
            const canvas = document.createElement('canvas');
            canvas.width = image.width;
            canvas.height = image.height;
            const context = canvas.getContext('2d', { willReadFrequently: true });
            context.drawImage(image, 0, 0);
            return wanted.map(({ x, y }) => [...context.getImageData(Math.round(x), Math.round(y), 1, 1).data].slice(0, 3));
        }, [`data:image/png;base64,${png.toString('base64')}`, points]);
    } finally {
        await page.close();
    }
}

/** True when no part of two colours differs by more than `tolerance`. */
export function isNear(colour, other, tolerance = 30) {
    return colour.every((part, index) => Math.abs(part - other[index]) <= tolerance);
}
