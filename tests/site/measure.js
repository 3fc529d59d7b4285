// Loads each page of the list into a frame, at each width, light and dark, and sends what is wrong to the server.
"use strict";

const WIDTHS = [360, 768, 1280];
const SCHEMES = ["default", "slate"];
const MINIMUM_CONTRAST = 4.5;

const frame = document.querySelector("iframe");
const problems = new Set();
let measured = 0;

const pause = milliseconds => new Promise(resolve => setTimeout(resolve, milliseconds));

function load(page) {
    return new Promise(resolve => {
        frame.onload = resolve;
        frame.src = page;
    });
}

function scrolls(element) {
    for (; element; element = element.parentElement)
        if (["auto", "scroll"].includes(getComputedStyle(element).overflowX))
            return true;
    return false;
}

// What a reader can see, without the navigation's drawer, which is outside the screen until it is opened.
function visible(page) {
    return [...page.querySelectorAll("header *, article *, footer *")].filter(e => e.getClientRects().length);
}

function widthProblems(page, width) {
    const found = [];
    if (page.documentElement.scrollWidth > width)
        found.push(`is ${page.documentElement.scrollWidth} pixels wide`);
    for (const element of page.querySelectorAll("article *")) {
        const right = element.getBoundingClientRect().right;
        if (right > width + 1 && !scrolls(element.parentElement))
            found.push(`${element.tagName} '${element.textContent.trim().split("\n")[0].slice(0, 40)}' ends at ${Math.round(right)}`);
    }
    return found;
}

function colour(text) {
    const [red, green, blue, alpha = 1] = text.match(/[\d.]+/g).map(Number);
    return {channels: [red, green, blue], alpha};
}

function over(front, back) {
    return front.channels.map((c, i) => c * front.alpha + back[i] * (1 - front.alpha));
}

function background(element) {
    if (!element)
        return [255, 255, 255];
    const own = colour(getComputedStyle(element).backgroundColor);
    return own.alpha === 1 ? own.channels : over(own, background(element.parentElement));
}

function luminance(channels) {
    const [red, green, blue] =
        channels.map(c => c / 255).map(c => c <= 0.03928 ? c / 12.92 : ((c + 0.055) / 1.055) ** 2.4);
    return 0.2126 * red + 0.7152 * green + 0.0722 * blue;
}

function contrast(element) {
    const back = background(element);
    const [low, high] = [luminance(over(colour(getComputedStyle(element).color), back)), luminance(back)]
        .sort((a, b) => a - b);
    return (high + 0.05) / (low + 0.05);
}

function contrastProblems(page) {
    const texts = visible(page).filter(e => [...e.childNodes].some(n => n.nodeType === 3 && n.data.trim()));
    return texts.filter(e => !e.matches(".headerlink") && contrast(e) < MINIMUM_CONTRAST).map(e =>
        `${e.tagName} ${e.className} in ${e.parentElement.className} '${e.textContent.trim().split("\n")[0].slice(0, 20)}' ` +
        `has the contrast ${contrast(e).toFixed(1)}`);
}

function schemeProblems(page, scheme) {
    const dark = luminance(background(page.querySelector("article"))) < 0.2;
    return dark === (scheme === "slate") ? [] : [`is ${dark ? "dark" : "light"}`];
}

function foreignProblems(page) {
    return page.defaultView.performance.getEntriesByType("resource").map(e => e.name)
        .filter(name => new URL(name).origin !== location.origin && !name.startsWith("data:"))
        .map(name => `loads ${name}`);
}

async function measure(name) {
    await load("/" + name);
    const page = frame.contentDocument;
    // Colours change at once.
    page.head.append(Object.assign(page.createElement("style"), {textContent: "* { transition: none !important }"}));
    for (const scheme of SCHEMES) {
        page.body.setAttribute("data-md-color-scheme", scheme);
        for (const width of WIDTHS) {
            frame.width = width;
            await pause(20);
            const found = [...widthProblems(page, width), ...contrastProblems(page), ...schemeProblems(page, scheme),
                           ...foreignProblems(page)];
            for (const problem of found)
                problems.add(`${name}, ${scheme}, ${width}: ${problem}`);
            measured++;
        }
    }
}

async function main() {
    const pages = await (await fetch("/test/pages.json")).json();
    try {
        for (const page of pages)
            await measure(page);
    } catch (error) {
        problems.add(`${error}`);
    }
    await fetch("/test/result", {method: "POST", body: JSON.stringify({measured, problems: [...problems]})});
}

main();
