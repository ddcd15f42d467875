// A hundred texts that would run script, load something or break the page if they were ever taken for more than text.
const harm = 'harm=1';

const byHand = [
    `<img src=x onerror=${harm}>`, `<script>${harm}</script>`, `"><script>${harm}</script>`, `'><script>${harm}</script>`,
    `<svg onload=${harm}>`, `<svg><script>${harm}</script></svg>`, `<svg><animate onbegin=${harm} attributeName=x dur=1s>`,
    `<iframe src="javascript:parent.${harm}"></iframe>`, `<iframe srcdoc="<script>parent.${harm}</script>"></iframe>`,
    `<a href="javascript:${harm}">x</a>`, `javascript:${harm}`, `data:text/html,<script>${harm}</script>`,
    `<math><mi//xlink:href="data:x,<script>${harm}</script>">`, `<object data="javascript:${harm}">`, `<embed src="javascript:${harm}">`,
    `<form action="javascript:${harm}"><input type=submit autofocus>`, `<button formaction="javascript:${harm}">`,
    `<details open ontoggle=${harm}>`, `<video><source onerror=${harm}></video>`, `<audio src=x onerror=${harm}>`,
    `<body onload=${harm}>`, `<style>@import "javascript:${harm}";</style>`, `<style>*{background:url("javascript:${harm}")}</style>`,
    `<link rel=stylesheet href="data:text/css,*{display:none}">`, `<base href="//evil.example/">`, `<meta http-equiv=refresh content="0;javascript:${harm}">`,
    `\${${harm}}`, `{{constructor.constructor('${harm}')()}}`, `<%= ${harm} %>`, `#{${harm}}`, '`+harm+`', `');${harm};//`, `");${harm};//`, `\\");${harm};//`,
    `</title><script>${harm}</script>`, `</textarea><script>${harm}</script>`, `</style><script>${harm}</script>`, `</script><script>${harm}</script>`,
    `<!--<img src="--><img src=x onerror=${harm}>`, `<![CDATA[<script>${harm}</script>]]>`, `<noscript><p title="</noscript><img src=x onerror=${harm}>">`,
    `&lt;script&gt;${harm}&lt;/script&gt;`, `&#60;script&#62;${harm}&#60;/script&#62;`, `%3Cscript%3E${harm}%3C/script%3E`, `\\u003cscript\\u003e${harm}\\u003c/script\\u003e`,
    `<scr<script>ipt>${harm}</scr</script>ipt>`, `<ScRiPt>${harm}</sCrIpT>`, `<script\t>${harm}</script\t>`, `<img/src=x/onerror=${harm}>`, `<img src="x" onerror="${harm}"`,
    `<x onclick=${harm} autofocus tabindex=1 onfocus=${harm}>`, `<input onfocus=${harm} autofocus>`, `<select onfocus=${harm} autofocus>`, `<marquee onstart=${harm}>`,
    `<template><script>${harm}</script></template>`, `<slot onslotchange=${harm}>`, `<portal src="javascript:${harm}">`, `<dialog open onclose=${harm}>`,
    '\u202Etxet sdrawkcab', '\u2066\u2067\u2068', '\u0000<script>', '\u200B\u200D\uFEFF', '\u2028\u2029', 'a'.repeat(300), '𝕏'.repeat(60), '\u0300'.repeat(120),
    '__proto__', 'constructor', 'toString', 'hasOwnProperty', 'prototype', 'null', 'undefined', '[object Object]', 'NaN', '-0', '1e999',
    '../../../../etc/passwd', 'C:\\Windows', '//evil.example/x', 'file:///etc/passwd', "' OR 1=1 --", '"; DROP TABLE sessions; --', '%00', '%s%n%x', '$(id)', '`id`', '| id', '; id', '\r\nSet-Cookie: a=b',
];

const events = ['onerror', 'onload', 'onclick', 'onmouseover', 'onanimationstart', 'ontransitionend', 'onpointerenter', 'onbeforetoggle', 'onwheel', 'oncontentvisibilityautostatechange', 'onscrollend', 'onsecuritypolicyviolation'];

export const hostileTexts = [...byHand, ...events.map((event) => `<b ${event}="${harm}" style="animation:x 1s">x</b>`)];
